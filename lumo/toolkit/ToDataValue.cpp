#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "lumo/LumoServiceLayer.h"
#include "lumo/toolkit/DataValues.h"
#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

/// What an attribute, or a column of its grids, takes.
struct Taken {
  AttributeType type = AttributeType::Text;
  std::vector<std::string> const& words;
};

/// Builds a value; every complaint names the attribute.
class Builder {
 public:
  Builder(Attribute const& attribute, std::string const& dbKey, Units const& units)
      : m_attribute(attribute), m_dbKey(dbKey), m_units(units) {}

  SmartPtr<IDataValue> Build(Value const& value, Taken const& taken) const {
    if (std::holds_alternative<std::monostate>(value)) return nullptr;
    if (std::holds_alternative<NotApplicable>(value)) {
      Refuse("cannot be set to \"not applicable\" by an import");
    }
    switch (taken.type) {
      case AttributeType::Text: return Text<ShortTextDataType>(value);
      case AttributeType::LongText: return Text<LongTextDataType>(value);
      case AttributeType::Date: return Date(value);
      case AttributeType::Integer: return Integer(value);
      case AttributeType::Logical: return Simple<LogicalDataType>(Get<bool>(value, "yes or no"));
      case AttributeType::Discrete: return Words(value, taken.words);
      case AttributeType::Number: return PointsOf(value);
      case AttributeType::Range: return RangeOf(value);
      case AttributeType::Curve: return CurvesOf(Get<Curves>(value, "curves"));
      case AttributeType::Grid:
        return Table(Get<std::shared_ptr<Grid const>>(value, "a table").get());
      case AttributeType::Link: return LinkOf(Get<Link>(value, "a link"));
      case AttributeType::Picture: return Binary<PictureDataType>(Get<File>(value, "a picture"));
      case AttributeType::File: return FileOf(Get<File>(value, "a file"));
      case AttributeType::Other: break;
    }
    Refuse("has a type that cannot be imported");
  }

 private:
  [[noreturn]] void Refuse(std::string const& why, Hint hint = {}) const {
    throw Error(ErrorCode::InvalidArgument, "the attribute " + Quoted(m_attribute.name) + " " + why,
                std::move(hint));
  }

  template <class T>
  T const& Get(Value const& value, char const* what) const {
    T const* const held = std::get_if<T>(&value);
    if (held == nullptr) Refuse(std::string("takes ") + what);
    return *held;
  }
  std::string const& Sendable(std::string const& text) const {
    if (!CanBeSent(text)) Refuse("holds a character that cannot be sent");
    return text;
  }
  double Finite(double figure) const {
    if (!std::isfinite(figure)) Refuse("holds a figure that is not a number");
    return figure;
  }

  template <class DataValue, class Content>
  static SmartPtr<IDataValue> Simple(Content const& content) {
    auto value = DataValue::CreateOne();
    value->SetValue(content);
    return value;
  }
  template <class DataValue>
  SmartPtr<IDataValue> Text(Value const& value) const {
    return Simple<DataValue>(Sendable(Get<std::string>(value, "a text")));
  }
  SmartPtr<IDataValue> Date(Value const& value) const {
    DateTime const& date = Get<DateTime>(value, "a date");
    if (!date.Microseconds()) {
      Refuse("takes a date such as 2026-03-17T09:30:00, not " + Quoted(date.text));
    }
    return Simple<DateTimeDataType>(date.text);
  }
  SmartPtr<IDataValue> Integer(Value const& value) const {
    constexpr char kTaken[] = "a whole number of 32 bits";
    std::int64_t const number = Get<std::int64_t>(value, kTaken);
    bool const fits =
        number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    if (!fits) Refuse(std::string("takes ") + kTaken);
    return Simple<IntegerDataType>(static_cast<int>(number));
  }

  SmartPtr<IDataValue> Words(Value const& value, std::vector<std::string> const& known) const {
    auto discrete = DiscreteDataType::CreateOne();
    for (std::string const& word : Get<std::vector<std::string>>(value, "a list of words")) {
      auto const place = std::find(known.begin(), known.end(), word);
      if (!known.empty() && place == known.end()) {
        Refuse("has no word " + Quoted(word) + "; it has " + Joined(known),
               {HintCode::OneOf, known});
      }
      auto one = DiscreteValue::CreateOne();
      one->SetValue(Sendable(word));
      discrete->AddDiscreteValue(one);
    }
    return discrete;
  }

  SmartPtr<IDataValue> LinkOf(Link const& link) const {
    auto value = HyperlinkDataType::CreateOne();
    value->SetValue(Sendable(link.url));
    value->SetDescription(Sendable(link.description));
    return value;
  }

  template <class DataValue>
  SmartPtr<DataValue> Binary(File const& file) const {
    if (file.data.empty() && !file.url.empty()) {
      Refuse("needs the bytes of the file, not only its address; read it with files");
    }
    auto value = DataValue::CreateOne();
    value->SetContentType(Sendable(file.contentType));
    value->SetData(file.data);
    return value;
  }
  SmartPtr<IDataValue> FileOf(File const& file) const {
    auto value = Binary<FileDataType>(file);
    value->SetFileName(Sendable(file.name));
    value->SetDescription(Sendable(file.description));
    return value;
  }

  template <class DataValue>
  SmartPtr<DataValue> Unitted(std::string const& unit, bool estimated) const {
    auto value = DataValue::CreateOne();
    value->SetUnitSymbol(Sendable(unit));
    value->SetEstimated(estimated);
    return value;
  }

  SmartPtr<IDataValue> RangeOf(Value const& value) const {
    if (auto const* const quantity = std::get_if<Quantity>(&value)) {
      return RangeOf(Range{quantity->value, quantity->value, quantity->unit, quantity->estimated});
    }
    Range const& range = Get<Range>(value, "a range of numbers");
    if (!range.low && !range.high) Refuse("takes a range with one end at least");
    auto data = Unitted<RangeDataType>(range.unit, range.estimated);
    if (range.low) data->SetLow(Finite(*range.low));
    if (range.high) data->SetHigh(Finite(*range.high));
    return data;
  }

  SmartPtr<IDataValue> PointsOf(Value const& value) const {
    if (auto const* const quantity = std::get_if<Quantity>(&value)) {
      return PointsOf(Points{{{quantity->value, {}}}, quantity->unit, quantity->estimated});
    }
    Points const& points = Get<Points>(value, "a number with its unit, or points");
    auto data = Unitted<PointDataType>(points.unit, points.estimated);
    data->SetParameters(AllParameters());
    for (Point const& point : points.points) {
      auto one = PointValueWithParameters::CreateOne();
      one->SetValue(Finite(point.value));
      for (Parameter const& parameter : point.parameters) {
        one->GetValueParameters()->AddParameterWithValue(
            WithValue<ParameterReferenceAndValue>(parameter));
      }
      data->AddPoint(one);
    }
    return data;
  }

  // ---- parameters

  template <class Info>
  Info const& Named(std::vector<Info> const& infos, char const* what,
                    std::string const& name) const {
    std::vector<std::string> names;
    for (Info const& info : infos) {
      if (info.name == name) return info;
      names.push_back(info.name);
    }
    Refuse(std::string("has no ") + what + " " + Quoted(name) +
               (names.empty() ? "" : "; it has " + Joined(names)),
           {HintCode::OneOf, names});
  }
  ParameterInfo const& InfoOf(std::string const& name) const {
    return Named(m_attribute.parameters, "parameter", name);
  }
  SmartPtr<ParameterReference> ReferenceTo(ParameterInfo const& info) const {
    auto reference = ParameterReference::CreateOne();
    reference->SetDBKey(m_dbKey);
    reference->SetID(info.identity);
    reference->SetName(info.name);
    return reference;
  }
  SmartPtr<ParameterInformation> InformationOf(ParameterInfo const& info) const {
    auto information = ParameterInformation::CreateOne();
    information->SetName(info.name);
    information->GetUnit()->SetUnitName(info.unit);
    information->GetUnit()->SetUnitSymbol(info.unit);
    information->SetParameterReference(ReferenceTo(info));
    return information;
  }
  SmartPtr<Parameters> AllParameters() const {
    auto all = Parameters::CreateOne();
    for (ParameterInfo const& info : m_attribute.parameters) {
      all->AddParameter(InformationOf(info));
    }
    return all;
  }
  SmartPtr<::ParameterValue> Figure(double figure, std::string const& unit,
                                    ParameterInfo const& info) const {
    if (info.isDiscrete) Refuse("takes words for its parameter " + Quoted(info.name));
    // The server takes the figures of parameters in their own units and is not told any other.
    if (!unit.empty() && !m_units.CanConvert(unit, info.unit)) {
      Refuse("takes its parameter " + Quoted(info.name) + " in " + info.unit + ", not in " + unit);
    }
    auto value = ::ParameterValue::CreateOne();
    value->SetValue_Numeric(
        Finite(unit.empty() ? figure : m_units.Convert(figure, unit, info.unit)));
    return value;
  }
  SmartPtr<::ParameterValue> Word(std::string const& word, ParameterInfo const& info) const {
    if (!info.isDiscrete) Refuse("takes numbers for its parameter " + Quoted(info.name));
    auto value = ::ParameterValue::CreateOne();
    value->SetValue_Discrete(Sendable(word));
    return value;
  }
  template <class Item>
  SmartPtr<Item> WithValue(Parameter const& parameter) const {
    ParameterInfo const& info = InfoOf(parameter.name);
    auto item = Item::CreateOne();
    item->SetParameter(ReferenceTo(info));
    auto const* const word = std::get_if<std::string>(&parameter.value);
    item->SetParameterValue(word == nullptr
                                ? Figure(std::get<double>(parameter.value), parameter.unit, info)
                                : Word(*word, info));
    return item;
  }
  SmartPtr<Constraints> ConstraintsOf(std::vector<Parameter> const& parameters) const {
    auto constraints = Constraints::CreateOne();
    for (Parameter const& parameter : parameters) {
      constraints->AddConstraint(WithValue<Constraint>(parameter));
    }
    return constraints;
  }

  // ---- curves

  SmartPtr<IDataValue> CurvesOf(Curves const& curves) const {
    for (Curve const& curve : curves.curves) Check(curve, curves.curves.front());
    Curve const frame = curves.curves.empty() ? Curve() : curves.curves.front();
    return curves.isGridded ? Gridded(curves, frame) : Graph(curves, frame);
  }

  void Check(Curve const& curve, Curve const& first) const {
    bool const fits = curve.xName == first.xName && curve.yUnit == first.yUnit;
    if (!fits) Refuse("takes curves with the same axes only");
    std::size_t const size = curve.x.size();
    auto const isWrong = [size](auto const& list) { return !list.empty() && list.size() != size; };
    if (curve.y.size() != size || isWrong(curve.yHigh) || isWrong(curve.xWords) ||
        isWrong(curve.estimated)) {
      Refuse("takes curves with as many y as x");
    }
  }

  template <class DataValue>
  SmartPtr<DataValue> Functional(Curve const& frame) const {
    auto value = DataValue::CreateOne();
    value->GetUnit()->SetUnitName(frame.yUnit);
    value->GetUnit()->SetUnitSymbol(Sendable(frame.yUnit));
    value->SetParameters(AllParameters());
    return value;
  }
  SmartPtr<ParameterInformation> AxisOf(Curve const& frame) const {
    return frame.xName.empty() ? nullptr : InformationOf(InfoOf(frame.xName));
  }
  static bool IsRange(Curve const& curve, std::size_t i) {
    return !curve.yHigh.empty() && !std::isnan(curve.yHigh[i]);
  }
  static bool IsEstimated(Curve const& curve, std::size_t i) {
    return !curve.estimated.empty() && curve.estimated[i];
  }
  /// Null for a point without a place on the x-axis.
  SmartPtr<::ParameterValue> XOf(Curve const& curve, std::size_t i) const {
    bool const hasWord =
        !curve.xWords.empty() && std::isnan(curve.x[i]) && !curve.xWords[i].empty();
    if (!hasWord && std::isnan(curve.x[i])) return nullptr;
    ParameterInfo const& info = InfoOf(curve.xName);
    return hasWord ? Word(curve.xWords[i], info) : Figure(curve.x[i], curve.xUnit, info);
  }

  SmartPtr<IDataValue> Graph(Curves const& curves, Curve const& frame) const {
    auto value = Functional<FloatFunctionalSeriesDataType>(frame);
    auto graph = FloatFunctionalSeriesGraph::CreateOne();
    graph->SetXAxisParameter(AxisOf(frame));
    graph->SetHideGraph(curves.isHidden);
    graph->SetLogarithmicYAxis(curves.isLogarithmic);
    for (Curve const& curve : curves.curves) {
      auto series = Series::CreateOne();
      series->SetConstraints(ConstraintsOf(curve.parameters));
      for (std::size_t i = 0; i < curve.x.size(); ++i) {
        series->GetXYPoints()->AddPoint(Datum(curve, i));
      }
      graph->AddSeries(series);
    }
    value->SetGraph(graph);
    return value;
  }

  SmartPtr<XYDatum> Datum(Curve const& curve, std::size_t i) const {
    SmartPtr<XYDatum> datum;
    if (IsRange(curve, i)) {
      auto range = XYRange::CreateOne();
      range->SetLowerY(Finite(curve.y[i]));
      range->SetUpperY(Finite(curve.yHigh[i]));
      datum = range;
    } else {
      auto point = XYPoint::CreateOne();
      point->SetY(Finite(curve.y[i]));
      datum = point;
    }
    datum->SetX(XOf(curve, i));
    datum->SetIsEstimated(IsEstimated(curve, i));
    return datum;
  }

  SmartPtr<IDataValue> Gridded(Curves const& curves, Curve const& frame) const {
    auto value = Functional<FloatFunctionalGriddedDataType>(frame);
    value->SetDefaultXAxisParameter(AxisOf(frame));
    value->SetValues(FloatFunctionalValues::CreateOne());
    for (Curve const& curve : curves.curves) {
      for (std::size_t i = 0; i < curve.x.size(); ++i) {
        auto entry = GriddedValue(curve, i);
        auto constraints = Constraints::CreateOne();
        if (auto const x = XOf(curve, i)) {
          auto constraint = Constraint::CreateOne();
          constraint->SetParameter(ReferenceTo(InfoOf(curve.xName)));
          constraint->SetParameterValue(x);
          constraints->AddConstraint(constraint);
        }
        for (Parameter const& parameter : curve.parameters) {
          constraints->AddConstraint(WithValue<Constraint>(parameter));
        }
        entry->SetConstraints(constraints);
        entry->SetEstimated(IsEstimated(curve, i));
        value->GetValues()->AddValue(entry);
      }
    }
    return value;
  }

  SmartPtr<FloatFunctionalValue> GriddedValue(Curve const& curve, std::size_t i) const {
    if (!IsRange(curve, i)) {
      auto point = FloatFunctionalPointValue::CreateOne();
      point->SetValue(Finite(curve.y[i]));
      return point;
    }
    auto range = FloatFunctionalRangeValue::CreateOne();
    range->SetLowValue(Finite(curve.y[i]));
    range->SetHighValue(Finite(curve.yHigh[i]));
    return range;
  }

  // ---- tables

  SmartPtr<IDataValue> Table(Grid const* grid) const {
    if (grid == nullptr) return nullptr;
    auto value = TabularDataType::CreateOne();
    std::vector<GridColumnInfo const*> infos;
    for (Grid::Column const& one : grid->columns) {
      auto column = TabularColumn::CreateOne();
      column->SetName(one.name);
      value->AddColumn(column);
      infos.push_back(&Named(m_attribute.columns, "column", one.name));
    }
    for (Grid::Row const& from : grid->rows) {
      if (from.cells.size() > infos.size()) Refuse("has a row with more cells than columns");
      auto const row = value->PushRow();
      row->SetLinkingValue(Sendable(from.linkingValue));
      for (std::size_t i = 0; i < from.cells.size(); ++i) {
        row->At(i)->SetData(Build(from.cells[i], {infos[i]->type, infos[i]->words}));
      }
    }
    return value;
  }

  Attribute const& m_attribute;
  std::string const& m_dbKey;
  Units const& m_units;
};

}  // namespace

SmartPtr<IDataValue> ToDataValue(Value const& value, Attribute const& attribute,
                                 std::string const& dbKey, Units const& units) {
  return Builder(attribute, dbKey, units).Build(value, {attribute.type, attribute.words});
}

}  // namespace lumo
