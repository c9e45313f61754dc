#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

#include "lumo/LumoServiceLayer.h"
#include "lumo/toolkit/DataValues.h"
#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/values/Visit.h"

namespace lumo {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kOpen = std::numeric_limits<double>::infinity();

RecordId IdOf(RecordReference const& record) {
  return {record.GetDBKey(), record.GetIdentity(), record.GetRecordGUID()};
}

std::vector<RecordId> IdsOf(std::vector<SmartPtr<RecordReference>> const& records) {
  std::vector<RecordId> ids;
  for (auto const& record : records) {
    if (record) ids.push_back(IdOf(*record));
  }
  return ids;
}

std::optional<double> Bound(bool isSet, double bound) {
  return isSet && std::isfinite(bound) ? std::optional<double>(bound) : std::nullopt;
}

/// Names and units of the parameters of one value, from the value itself, then from the attribute.
class Known {
 public:
  Known(Parameters const* parameters, Attribute const* attribute)
      : m_parameters(parameters), m_attribute(attribute) {}

  std::string NameOf(ParameterReference const& reference) const {
    if (!reference.GetName().empty() || reference.GetID() == 0) return reference.GetName();
    std::string name;
    ForEach([&](ParameterInformation const& one) {
      auto const known = one.GetParameterReference();
      if (known && known->GetID() == reference.GetID()) name = one.GetName();
    });
    if (!name.empty() || m_attribute == nullptr) return name;
    for (ParameterInfo const& one : m_attribute->parameters) {
      if (one.identity == reference.GetID()) name = one.name;
    }
    return name;
  }

  std::string UnitOf(std::string const& name) const {
    std::string unit;
    bool isKnown = false;
    ForEach([&](ParameterInformation const& one) {
      if (one.GetName() != name || !one.GetUnit()) return;
      unit = one.GetUnit()->GetUnitSymbol();
      isKnown = true;
    });
    ParameterInfo const* const info = isKnown ? nullptr : Info(name);
    return info == nullptr ? unit : info->unit;
  }

  /// Null when the attribute is not known, or not to have that parameter.
  ParameterInfo const* Info(std::string const& name) const {
    if (m_attribute == nullptr) return nullptr;
    for (ParameterInfo const& one : m_attribute->parameters) {
      if (one.name == name) return &one;
    }
    return nullptr;
  }

  template <class List>
  std::vector<Parameter> All(List const& list) const {
    std::vector<Parameter> parameters;
    for (auto const& one : list) {
      if (!one || !one->GetParameter() || !one->GetParameterValue()) continue;
      Parameter parameter;
      parameter.name = NameOf(*one->GetParameter());
      ::ParameterValue const& value = *one->GetParameterValue();
      if (value.GetType() == ::ParameterValue::Numeric) {
        parameter.value = value.GetValue_Numeric();
        parameter.unit = UnitOf(parameter.name);
      } else {
        parameter.value = value.GetValue_Discrete();
      }
      parameters.push_back(std::move(parameter));
    }
    return parameters;
  }
  std::vector<Parameter> All(SmartPtr<Constraints> const& constraints) const {
    if (!constraints) return {};
    return All(constraints->AccessConstraints());
  }

 private:
  template <class Function>
  void ForEach(Function function) const {
    if (m_parameters == nullptr) return;
    for (auto const& one : m_parameters->AccessParameters()) {
      if (one) function(*one);
    }
  }

  Parameters const* m_parameters;
  Attribute const* m_attribute;
};

/// Collects the points of one curve.
class CurveBuilder {
 public:
  explicit CurveBuilder(Curve curve) : m_curve(std::move(curve)) {}

  Curve Take() { return std::move(m_curve); }

  void Add(std::variant<double, std::string> const& x, double low, double high, bool estimated) {
    std::size_t const place = m_curve.x.size();
    auto const* const word = std::get_if<std::string>(&x);
    m_curve.x.push_back(word == nullptr ? std::get<double>(x) : kNone);
    Put(m_curve.xWords, place, word == nullptr ? std::string() : *word, std::string());
    m_curve.y.push_back(low);
    Put(m_curve.yHigh, place, high, kNone);
    Put(m_curve.estimated, place, estimated, false);
  }

 private:
  static bool IsNothing(double value) { return std::isnan(value); }
  static bool IsNothing(bool value) { return !value; }
  static bool IsNothing(std::string const& value) { return value.empty(); }

  /// Adds to a list that stays empty as long as there is nothing to add.
  template <class List, class Item>
  static void Put(List& list, std::size_t place, Item const& item, Item const& nothing) {
    if (list.empty() && IsNothing(item)) return;
    list.resize(place, nothing);
    list.push_back(item);
  }

  Curve m_curve;
};

class Reader {
 public:
  explicit Reader(Attribute const* attribute) : m_attribute(attribute) {}

  Value operator()(RangeDataType const& range) const {
    return Range{Bound(range.GetLowSet(), range.GetLow()),
                 Bound(range.GetHighSet(), range.GetHigh()), range.GetUnitSymbol(),
                 range.GetEstimated()};
  }

  Value operator()(PointDataType const& value) const {
    Known const known(value.GetParameters().get(), m_attribute);
    Points points = {{}, value.GetUnitSymbol(), value.GetEstimated()};
    for (auto const& point : value.AccessPoints()) {
      if (!point) continue;
      auto const parameters = point->GetValueParameters();
      points.points.push_back(
          {point->GetValue(), parameters ? known.All(parameters->AccessParameterWithValue())
                                         : std::vector<Parameter>()});
    }
    bool const isSingle = points.points.size() == 1 && points.points[0].parameters.empty();
    if (!isSingle) return points;
    return Quantity{points.points[0].value, std::move(points.unit), points.estimated};
  }

  Value operator()(ShortTextDataType const& text) const { return text.GetValue(); }
  Value operator()(LongTextDataType const& text) const { return text.GetValue(); }
  Value operator()(DateTimeDataType const& date) const { return DateTime{date.GetValue()}; }
  Value operator()(IntegerDataType const& integer) const {
    return std::int64_t{integer.GetValue()};
  }
  Value operator()(LogicalDataType const& logical) const { return logical.GetValue(); }

  Value operator()(DiscreteDataType const& discrete) const {
    std::vector<std::string> words;
    for (auto const& word : discrete.AccessDiscreteValues()) {
      if (word) words.push_back(word->GetValue());
    }
    return words;
  }

  Value operator()(HyperlinkDataType const& link) const {
    return Link{link.GetValue(), link.GetDescription()};
  }

  Value operator()(PictureDataType const& picture) const { return FileOf(picture); }
  Value operator()(FileDataType const& value) const {
    File file = FileOf(value);
    file.name = value.GetFileName();
    file.description = value.GetDescription();
    return file;
  }

  Value operator()(TabularDataType const& table) const {
    auto grid = std::make_shared<Grid>();
    for (auto const& column : table.GetColumns()) {
      grid->columns.push_back({column->GetName(), ColumnUnit(column->GetName())});
    }
    for (auto const& row : table.GetRows()) {
      if (row) grid->rows.push_back(RowOf(*row, *grid));
    }
    return std::shared_ptr<Grid const>(std::move(grid));
  }

  Value operator()(FloatFunctionalSeriesDataType const& value) const {
    Curves curves;
    auto const graph = value.GetGraph();
    if (!graph) return curves;
    curves.isHidden = graph->GetHideGraph();
    curves.isLogarithmic = graph->GetLogarithmicYAxis();
    Known const known(value.GetParameters().get(), m_attribute);
    Curve const frame = FrameOf(value, graph->GetXAxisParameter(), known);
    for (auto const& series : graph->AccessSeries()) {
      if (!series) continue;
      CurveBuilder curve(frame);
      auto const data = series->GetXYPoints();
      if (data) {
        for (auto const& datum : data->AccessPoints()) AddDatum(curve, datum.get());
      }
      curves.curves.push_back(curve.Take());
      curves.curves.back().parameters = known.All(series->GetConstraints());
    }
    return curves;
  }

  /// Values that agree in all parameters but that of the x-axis are a curve.
  Value operator()(FloatFunctionalGriddedDataType const& value) const {
    Curves curves;
    curves.isGridded = true;
    Known const known(value.GetParameters().get(), m_attribute);
    Curve const frame = FrameOf(value, value.GetDefaultXAxisParameter(), known);
    std::vector<CurveBuilder> builders;
    std::map<std::string, std::size_t> places;
    auto const values = value.GetValues();
    if (!values) return curves;
    for (auto const& one : values->AccessValues()) {
      if (!one) continue;
      Curve curve = frame;
      curve.parameters = known.All(one->GetConstraints());
      auto const x = TakeX(curve);
      auto const [place, isNew] = places.try_emplace(KeyOf(curve.parameters), builders.size());
      if (isNew) builders.emplace_back(std::move(curve));
      CurveBuilder& builder = builders[place->second];
      if (auto const* const point = dynamic_cast<FloatFunctionalPointValue const*>(one.get())) {
        builder.Add(x, point->GetValue(), kNone, one->GetEstimated());
      } else if (auto const* const range =
                     dynamic_cast<FloatFunctionalRangeValue const*>(one.get())) {
        builder.Add(x, LowEnd(range->GetLowValue()), HighEnd(range->GetHighValue()),
                    one->GetEstimated());
      }
    }
    for (CurveBuilder& builder : builders) curves.curves.push_back(builder.Take());
    return curves;
  }

  Value operator()(ListDataType const& value) const {
    auto list = std::make_shared<List>();
    for (auto const& item : value.AccessItems()) {
      list->items.push_back(FromDataValue(item.get(), m_attribute));
    }
    return std::shared_ptr<List const>(std::move(list));
  }

  Value operator()(LinkedRecordsDataType const& value) const {
    LinkedRecords links;
    for (auto const& group : value.AccessRecordLinkGroups()) {
      if (group) links.groups.push_back({group->GetName(), IdsOf(group->AccessLinkedRecords())});
    }
    return links;
  }

  Value operator()(EmptyDataType const& /*value*/) const { return {}; }

 private:
  static double LowEnd(double end) { return std::isfinite(end) ? end : -kOpen; }
  static double HighEnd(double end) { return -LowEnd(-end); }

  template <class Value>
  static File FileOf(Value const& value) {
    File file;
    file.contentType = value.GetContentType();
    file.url = value.GetURL();
    if (!file.url.empty()) return file;
    try {
      file.data = value.GetData();
    } catch (std::runtime_error const& error) {
      throw Error(ErrorCode::NotUnderstood,
                  std::string("the reply holds a file that cannot be read: ") + error.what());
    }
    return file;
  }

  std::string ColumnUnit(std::string const& name) const {
    if (m_attribute == nullptr) return "";
    for (GridColumnInfo const& column : m_attribute->columns) {
      if (column.name == name) return column.unit;
    }
    return "";
  }

  Grid::Row RowOf(TabularDataRow const& from, Grid& grid) const {
    Grid::Row row;
    row.linkingValue = from.GetLinkingValue();
    row.links = IdsOf(from.GetLinkedRecords());
    row.cells.resize(grid.columns.size());
    std::size_t const cells = std::min(row.cells.size(), from.GetData().size());
    for (std::size_t i = 0; i < cells; ++i) {
      auto const& cell = from.GetData()[i];
      if (!cell) continue;
      row.cells[i] = FromDataValue(cell->GetData().get(), m_attribute);
      std::string const& unit = UnitIn(row.cells[i]);
      if (grid.columns[i].unit.empty()) grid.columns[i].unit = unit;
    }
    return row;
  }

  Curve FrameOf(FloatFunctionalDataType const& value, SmartPtr<ParameterInformation> const& axis,
                Known const& known) const {
    Curve curve;
    if (value.GetUnit()) curve.yUnit = value.GetUnit()->GetUnitSymbol();
    if (!axis) return curve;
    curve.xName = axis->GetName();
    bool const hasUnit = axis->GetUnit() && !axis->GetUnit()->GetUnitSymbol().empty();
    curve.xUnit = hasUnit ? axis->GetUnit()->GetUnitSymbol() : known.UnitOf(curve.xName);
    if (ParameterInfo const* const info = known.Info(curve.xName)) {
      curve.interpolation = info->interpolation;
      curve.xIsLogarithmic = info->isLogarithmic;
    }
    return curve;
  }

  static void AddDatum(CurveBuilder& curve, XYDatum const* datum) {
    if (datum == nullptr) return;
    std::variant<double, std::string> x = kNone;
    if (auto const at = datum->GetX()) {
      if (at->GetType() == ::ParameterValue::Numeric) {
        x = at->GetValue_Numeric();
      } else {
        x = at->GetValue_Discrete();
      }
    }
    if (auto const* const range = dynamic_cast<XYRange const*>(datum)) {
      curve.Add(x, LowEnd(range->GetLowerY()), HighEnd(range->GetUpperY()),
                datum->GetIsEstimated());
    } else if (auto const* const point = dynamic_cast<XYPoint const*>(datum)) {
      curve.Add(x, point->GetY(), kNone, datum->GetIsEstimated());
    }
  }

  /// Takes the place on the x-axis out of the parameters of a single value.
  static std::variant<double, std::string> TakeX(Curve& curve) {
    auto const axis =
        std::find_if(curve.parameters.begin(), curve.parameters.end(),
                     [&curve](Parameter const& one) { return one.name == curve.xName; });
    if (axis == curve.parameters.end()) return kNone;
    std::variant<double, std::string> x = std::move(axis->value);
    curve.parameters.erase(axis);
    return x;
  }

  static std::string KeyOf(std::vector<Parameter> const& parameters) {
    std::string key;
    for (Parameter const& one : parameters) {
      auto const* const word = std::get_if<std::string>(&one.value);
      key += one.name + '\x1f' + (word == nullptr ? '#' : '"') +
             (word == nullptr ? ExactTextOf(std::get<double>(one.value)) : *word) + '\x1e';
    }
    return key;
  }

  Attribute const* m_attribute;
};

}  // namespace

Value FromDataValue(IDataValue const* value, Attribute const* attribute) {
  if (value == nullptr) return {};
  if (value->GetIsNotApplicable()) return NotApplicable();
  return Visit(*value, Reader(attribute));
}

}  // namespace lumo
