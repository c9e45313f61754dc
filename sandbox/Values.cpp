#include "Values.h"

#include <algorithm>
#include <limits>
#include <map>
#include <sstream>
#include <vector>

#include "Soap.h"

namespace sandbox {
namespace {

std::string Printed(pugi::xml_node parent) {
  std::ostringstream text;
  for (pugi::xml_node const child : parent.children()) child.print(text, "", pugi::format_raw);
  return text.str();
}

/// Collects what searches look at while a value is read.
class Figures {
 public:
  void Add(double value) {
    m_low = std::min(m_low, value);
    m_high = std::max(m_high, value);
  }
  void Into(StoredValue& value) const {
    if (m_low > m_high) return;
    value.low = TextOfNumber(m_low);
    value.high = TextOfNumber(m_high);
  }

 private:
  double m_low = std::numeric_limits<double>::infinity();
  double m_high = -std::numeric_limits<double>::infinity();
};

/// Turns the content of one value from the form of an import into that of a reply.
class ValueReader {
 public:
  ValueReader(Store& store, Attribute const& attribute, StoredValue& value)
      : m_store(store), m_attribute(attribute), m_value(value) {}

  /// `kind` is the name of the value's element without "DataValue".
  void Read(std::string const& kind, pugi::xml_node from, pugi::xml_node to) {
    if (kind == "Range") return ReadRange(from, to);
    if (kind == "Point") return ReadPoint(from, to);
    if (kind == "Discrete") return ReadDiscrete(from, to);
    if (kind == "Hyperlink") return ReadTexts(from, to, {"Value", "Description"});
    if (kind == "File")
      return ReadTexts(from, to, {"data", "contentType", "fileName", "description"});
    if (kind == "Picture") return ReadTexts(from, to, {"data", "contentType"});
    if (kind == "FloatFunctionalSeries") return ReadSeries(from, to);
    if (kind == "FloatFunctionalGridded") return ReadGridded(from, to);
    if (kind == "Empty" || kind == "List") return Checker(from).End();
    std::string text = TextOf(from);
    if (kind == "Integer") m_figures.Add(IntegerOf(from));
    if (kind == "Logical") text = BooleanOf(from) ? "true" : "false";
    m_value.text += text + "\n";
    to.text().set(text.c_str());
  }
  void Finish() const { m_figures.Into(m_value); }

 private:
  /// A figure in the attribute's unit.
  std::string Figure(pugi::xml_node node, std::string const& unit) {
    double const value = Convert(m_store, RealOf(node), unit, m_attribute.unit);
    m_figures.Add(value);
    return TextOfNumber(value);
  }

  /// Reads estimate and unit, and writes what replies begin with; returns the unit that was sent.
  std::string ReadUnit(Checker& in, pugi::xml_node to) {
    bool const isEstimated = BooleanOf(in.Required("zbt:Estimated"));
    std::string unit = TextOf(in.Required("zbt:UnitSymbol"));
    AddText(to, "b:UnitSymbol", m_attribute.unit);
    AddText(to, "b:Estimated", isEstimated ? "true" : "false");
    return unit;
  }

  void ReadRange(pugi::xml_node from, pugi::xml_node to) {
    Checker in(from);
    std::string const unit = ReadUnit(in, to);
    for (std::string const name : {"LowValue", "HighValue"}) {
      pugi::xml_node const bound = in.Required("zbt:" + name);
      bool const isOpen = TextOf(bound) == "NaN";
      AddText(to, ("b:" + name).c_str(), isOpen ? "NaN" : Figure(bound, unit));
    }
    in.End();
  }

  void ReadPoint(pugi::xml_node from, pugi::xml_node to) {
    Checker in(from);
    std::string const unit = ReadUnit(in, to);
    pugi::xml_node const parameters = in.Required("zbt:Parameters");
    while (in.HasMore()) {
      Checker point(in.Required("zbt:Point"));
      pugi::xml_node element = to.append_child("b:Point");
      AddText(element, "b:Value", Figure(point.Required("zbt:Value"), unit));
      Checker values(point.Required("zbt:ValueParameters"));
      point.End();
      pugi::xml_node list = element.append_child("b:ValueParameters");
      while (values.HasMore()) {
        Checker with(values.Required("zbt:ParameterWithValue"));
        ReadParameterAndValue(with, list.append_child("b:ParameterWithValue"));
        with.End();
      }
    }
    ReadParameters(parameters, to.append_child("b:Parameters"));
  }

  void ReadDiscrete(pugi::xml_node from, pugi::xml_node to) {
    Checker in(from);
    int count = 0;
    while (in.HasMore()) {
      pugi::xml_node const node = in.Required("zbt:Discrete", {"zbt:order"});
      std::string const word = TextOf(node);
      auto const known = m_store.Rows(
          "SELECT position FROM attribute_discrete WHERE attribute_id = ? AND word = ?",
          {std::to_string(m_attribute.id), word});
      if (known.empty()) throw Fault("the attribute does not know the word \"" + word + "\"");
      AddText(to, "b:Discrete", word).append_attribute("b:order") = known[0].Int(0);
      m_value.text += word + "\n";
      ++count;
    }
    if (count > 1 && !m_attribute.isMultiValued) {
      throw Fault("\"" + m_attribute.name + "\" takes one word only");
    }
  }

  void ReadTexts(pugi::xml_node from, pugi::xml_node to, std::vector<std::string> const& names) {
    Checker in(from);
    for (std::string const& name : names) {
      std::string const text = TextOf(in.Required("zbt:" + name));
      AddText(to, ("b:" + name).c_str(), text);
      if (name != "data") m_value.text += text + "\n";
    }
    in.End();
  }

  void ReadParameterValue(pugi::xml_node from, pugi::xml_node to) {
    std::string const type = from.attribute("xsi:type").value();
    bool const isNumeric = type == "zbt:NumericParameterValue";
    if (!isNumeric && type != "zbt:DiscreteParameterValue") {
      throw Fault("a parameter value must not have the type \"" + type + "\"");
    }
    to.append_attribute("i:type") = ("b:" + type.substr(4)).c_str();
    Checker in(from);
    pugi::xml_node const value = in.Required("zbt:Value");
    in.End();
    AddText(to, "b:Value", isNumeric ? TextOfNumber(RealOf(value)) : TextOf(value));
  }

  void ReadParameterAndValue(Checker& in, pugi::xml_node to) {
    std::string dbKey;
    Parameter const parameter = ReadParameter(m_store, in.Required("zbt:Parameter"), &dbKey);
    WriteParameter(to.append_child("b:Parameter"), parameter, dbKey);
    ReadParameterValue(in.Required("zbt:ParameterValue", {"xsi:type"}),
                       to.append_child("b:ParameterValue"));
  }

  void ReadUnitInformation(pugi::xml_node from, pugi::xml_node to) {
    Checker in(from);
    AddText(to, "b:UnitName", TextOf(in.Required("zbt:UnitName")));
    AddText(to, "b:UnitSymbol", TextOf(in.Required("zbt:UnitSymbol")));
    in.End();
  }

  void ReadParameterInformation(pugi::xml_node from, pugi::xml_node to) {
    Checker in(from);
    if (auto const reference = in.Optional("zbt:ParameterReference")) {
      std::string dbKey;
      Parameter const parameter = ReadParameter(m_store, reference, &dbKey);
      WriteParameter(to.append_child("b:ParameterReference"), parameter, dbKey);
    }
    AddText(to, "b:Name", TextOf(in.Required("zbt:Name")));
    ReadUnitInformation(in.Required("zbt:Unit"), to.append_child("b:Unit"));
    in.End();
  }

  void ReadParameters(pugi::xml_node from, pugi::xml_node to) {
    Checker in(from);
    while (in.HasMore()) {
      ReadParameterInformation(in.Required("zbt:Parameter"), to.append_child("b:Parameter"));
    }
  }

  void ReadConstraints(pugi::xml_node from, pugi::xml_node to) {
    Checker in(from);
    while (in.HasMore()) {
      Checker constraint(in.Required("zbt:Constraint"));
      pugi::xml_node element = to.append_child("b:Constraint");
      ReadParameterAndValue(constraint, element);
      AddText(element, "b:Label", TextOf(constraint.Required("zbt:Label")));
      constraint.End();
    }
  }

  /// Reads what both kinds of curves begin with; returns the unit that was sent.
  std::string ReadCurveHead(Checker& in, pugi::xml_node to) {
    ReadParameters(in.Required("zbt:Parameters"), to.append_child("b:Parameters"));
    Checker unit(in.Required("zbt:Unit"));
    TextOf(unit.Required("zbt:UnitName"));
    std::string symbol = TextOf(unit.Required("zbt:UnitSymbol"));
    unit.End();
    WriteUnit(m_store, to.append_child("b:Unit"), m_attribute.unit);
    return symbol;
  }

  void ReadFigures(Checker& in, pugi::xml_node to, std::string const& unit,
                   std::vector<std::string> const& names) {
    for (std::string const& name : names) {
      AddText(to, ("b:" + name).c_str(), Figure(in.Required("zbt:" + name), unit));
    }
    in.End();
  }

  void ReadSeries(pugi::xml_node from, pugi::xml_node to) {
    Checker in(from);
    std::string const unit = ReadCurveHead(in, to);
    if (!in.HasMore()) return;
    pugi::xml_node const graphNode =
        in.Required("zbt:Graph", {"zbt:HideGraph", "zbt:LogarithmicYAxis"});
    in.End();
    pugi::xml_node element = to.append_child("b:Graph");
    element.append_attribute("b:HideGraph") = graphNode.attribute("zbt:HideGraph").value();
    element.append_attribute("b:LogarithmicYAxis") =
        graphNode.attribute("zbt:LogarithmicYAxis").value();
    Checker graph(graphNode);
    while (pugi::xml_node const node = graph.Optional("zbt:Series", {"zbt:decoration"})) {
      ReadOneSeries(node, element.append_child("b:Series"), unit);
    }
    if (auto const axis = graph.Optional("zbt:XAxisParameter")) {
      ReadParameterInformation(axis, element.append_child("b:XAxisParameter"));
    }
    graph.End();
  }

  void ReadOneSeries(pugi::xml_node from, pugi::xml_node to, std::string const& unit) {
    to.append_attribute("b:decoration") = from.attribute("zbt:decoration").value();
    Checker in(from);
    ReadConstraints(in.Required("zbt:Constraints"), to.append_child("b:Constraints"));
    Checker points(in.Required("zbt:XYPoints"));
    in.End();
    pugi::xml_node list = to.append_child("b:XYPoints");
    while (points.HasMore()) {
      pugi::xml_node const node = points.Required("zbt:XYPoint", {"xsi:type"});
      bool const isRange = std::string(node.attribute("xsi:type").value()) == "zbt:XYRange";
      pugi::xml_node point = list.append_child("b:XYPoint");
      point.append_attribute("i:type") = isRange ? "b:XYRange" : "b:XYPoint";
      Checker datum(node);
      if (auto const x = datum.Optional("zbt:X", {"xsi:type"})) {
        ReadParameterValue(x, point.append_child("b:X"));
      }
      AddText(point, "b:Estimated", BooleanOf(datum.Required("zbt:Estimated")) ? "true" : "false");
      ReadFigures(
          datum, point, unit,
          isRange ? std::vector<std::string>{"LowerY", "UpperY"} : std::vector<std::string>{"Y"});
    }
  }

  void ReadGridded(pugi::xml_node from, pugi::xml_node to) {
    Checker in(from);
    std::string const unit = ReadCurveHead(in, to);
    if (auto const valuesNode = in.Optional("zbt:Values")) {
      Checker values(valuesNode);
      pugi::xml_node list = to.append_child("b:Values");
      list.append_attribute("b:decoration") = from.attribute("zbt:decoration").value();
      while (values.HasMore()) {
        pugi::xml_node const node = values.Required("zbt:Value", {"xsi:type"});
        std::string const type = node.attribute("xsi:type").value();
        bool const isRange = type == "zbt:FloatFunctionalRangedValue";
        pugi::xml_node value = list.append_child("b:Value");
        value.append_attribute("i:type") = ("b:" + type.substr(type.find(':') + 1)).c_str();
        Checker one(node);
        ReadConstraints(one.Required("zbt:Constraints"), value.append_child("b:Constraints"));
        AddText(value, "b:Estimated", BooleanOf(one.Required("zbt:Estimated")) ? "true" : "false");
        ReadFigures(
            one, value, unit,
            isRange ? std::vector<std::string>{"Low", "High"} : std::vector<std::string>{"Value"});
      }
    }
    if (auto const axis = in.Optional("zbt:DefaultXAxisParameter")) {
      ReadParameterInformation(axis, to.append_child("b:DefaultXAxisParameter"));
    }
    in.End();
  }

  Store& m_store;
  Attribute const& m_attribute;
  StoredValue& m_value;
  Figures m_figures;
};

/// Reads tabular data in the form of an import into the stored table.
class TableReader {
 public:
  TableReader(Store& store, Attribute const& attribute, StoredValue& value, pugi::xml_node table)
      : m_store(store), m_attribute(attribute), m_value(value), m_table(table) {
    for (Row const& row : store.Rows(
             "SELECT name, type, unit FROM tabular_column WHERE attribute_id = ? ORDER BY position",
             {std::to_string(attribute.id)})) {
      m_columns.push_back({row.Text(0), row.Text(2)});
    }
    if (!table.child("b:columns")) {
      pugi::xml_node columns = table.append_child("b:columns");
      for (Column const& column : m_columns) {
        AddText(columns, "b:column", column.name).append_attribute("b:columnType") = "Local";
      }
      table.append_child("b:summaryRow");
      table.append_child("b:rows");
    }
    m_rows = table.child("b:rows");
    for (pugi::xml_node const row : m_rows.children()) {
      m_lastIdentity = std::max(m_lastIdentity, row.attribute("b:identity").as_int());
    }
  }

  void Read(pugi::xml_node from) {
    Checker in(from);
    if (auto const rows = in.Optional("zbt:Rows")) {
      m_rows.remove_children();
      Checker list(rows);
      while (list.HasMore()) ReadRow(RowIn(list, "zbt:Row"), m_rows.append_child("b:row"));
    } else {
      Checker changes(in.Required("zbt:Changes"));
      for (std::string const kind : {"InsertBefore", "Append", "Update", "Delete"}) {
        while (changes.HasMore() && Peek(changes, "zbt:" + kind)) Change(kind);
      }
      changes.End();
    }
    in.End();
    m_value.text = AllText();
  }

 private:
  struct Column {
    std::string name;
    std::string unit;
  };

  static pugi::xml_node RowIn(Checker& in, std::string const& name) {
    return in.RequiredWithAnyOf(name, {"zbt:linkingValue", "zbt:rowIdentity"});
  }
  bool Peek(Checker& changes, std::string const& name) {
    if (!changes.IsNext(name)) return false;
    m_change = RowIn(changes, name);
    return true;
  }

  void Change(std::string const& kind) {
    int const identity = m_change.attribute("zbt:rowIdentity").as_int();
    if (kind == "Append") return ReadRow(m_change, m_rows.append_child("b:row"));
    pugi::xml_node target = m_rows.find_child([identity](pugi::xml_node row) {
      return row.attribute("b:identity").as_int() == identity;
    });
    if (!target) throw Fault("the table has no row " + std::to_string(identity));
    if (kind == "InsertBefore") {
      ReadRow(m_change, m_rows.insert_child_before("b:row", target));
    } else if (kind == "Update") {
      ReadRow(m_change, target);
    } else {
      m_rows.remove_child(target);
    }
  }

  void ReadRow(pugi::xml_node from, pugi::xml_node row) {
    if (!row.attribute("b:identity")) row.append_attribute("b:identity") = ++m_lastIdentity;
    if (!row.child("b:Cells")) {
      pugi::xml_node cells = row.append_child("b:Cells");
      for (std::size_t i = 0; i < m_columns.size(); ++i) {
        cells.append_child("b:TabularDataCell").append_child("b:Empty");
      }
    }
    Checker in(from);
    Checker cells(in.Required("zbt:Cells"));
    in.End();
    while (cells.HasMore()) ReadCell(cells.RequiredWithAnyOf("zbt:Cell", {"zbt:columnName"}), row);
    std::string const linking = from.attribute("zbt:linkingValue").value();
    if (!linking.empty()) LinkRow(row, linking);
  }

  void ReadCell(pugi::xml_node from, pugi::xml_node row) {
    if (!from.attribute("zbt:columnName")) return Checker(from).End();
    std::string const name = from.attribute("zbt:columnName").value();
    auto const column = std::find_if(m_columns.begin(), m_columns.end(),
                                     [&name](Column const& c) { return c.name == name; });
    if (column == m_columns.end()) throw Fault("the table has no column \"" + name + "\"");
    Checker in(from);
    pugi::xml_node const node =
        in.RequiredWithAnyOf(from.first_child().name(), {"zbt:isNotApplicable"});
    in.End();
    std::string const kind = std::string(node.name()).substr(4);
    pugi::xml_node cell = row.child("b:Cells").first_child();
    for (auto i = m_columns.begin(); i != column; ++i) cell = cell.next_sibling();
    cell.remove_children();
    Attribute asAttribute = m_attribute;
    asAttribute.unit = column->unit;
    StoredValue ignored;
    ValueReader(m_store, asAttribute, ignored)
        .Read(kind, node, cell.append_child(("b:" + kind).c_str()));
  }

  /// A row links to the records of its database that have the linking value for their short name.
  void LinkRow(pugi::xml_node row, std::string const& linking) {
    row.remove_child("b:LinkedRecords");
    pugi::xml_node links = row.prepend_child("b:LinkedRecords");
    int const database = m_store.TableOf(m_attribute.tableId).databaseId;
    for (Record const& record :
         Records(m_store, "r.short_name = ? AND r.is_current = 1 AND d.id = ?",
                 {linking, std::to_string(database)})) {
      pugi::xml_node link = links.append_child("b:LinkedRecord");
      link.append_attribute("b:linkingValue") = linking.c_str();
      WriteRecord(link, record);
    }
  }

  std::string AllText() const {
    std::string text;
    for (pugi::xml_node const row : m_rows.children()) {
      pugi::xml_node cell = row.child("b:Cells").first_child();
      for (Column const& column : m_columns) {
        text += column.name + "=" + cell.first_child().text().get() + "\n";
        cell = cell.next_sibling();
      }
    }
    return text;
  }

  Store& m_store;
  Attribute const& m_attribute;
  StoredValue& m_value;
  pugi::xml_node m_table;
  pugi::xml_node m_rows;
  pugi::xml_node m_change;
  std::vector<Column> m_columns;
  int m_lastIdentity = 0;
};

/// Attributes that the value's element carries in an import.
pugi::xml_node ImportElement(Checker& in, std::string const& name, std::string const& type) {
  if (type == "RNGE" || type == "POIN") return in.Required(name, {"zbt:isNotApplicable"});
  if (name == "zbt:FloatFunctionalSeriesDataValue") {
    return in.Required(name, {"zbt:isNotApplicable"});
  }
  if (name == "zbt:FloatFunctionalGriddedDataValue") {
    return in.Required(name, {"zbt:isNotApplicable", "zbt:decoration"});
  }
  return in.Required(name);
}

/// Converts the text of an element from unit to unit; open bounds stay.
void ConvertText(Store& store, pugi::xml_node node, std::string const& from,
                 std::string const& to) {
  std::string const text = node.text().get();
  if (text.empty() || text == "NaN") return;
  node.text().set(TextOfNumber(Convert(store, NumberOf(text), from, to)).c_str());
}

/// Converts the figures of a value that is a number, a range or a curve.
void ConvertFigures(Store& store, pugi::xml_node value, std::string const& from,
                    std::string const& to) {
  for (char const* const name : {"b:LowValue", "b:HighValue"}) {
    if (auto const bound = value.child(name)) ConvertText(store, bound, from, to);
  }
  for (pugi::xml_node const point : value.children("b:Point")) {
    ConvertText(store, point.child("b:Value"), from, to);
  }
  for (pugi::xml_node const series : value.child("b:Graph").children("b:Series")) {
    for (pugi::xml_node const point : series.child("b:XYPoints").children()) {
      for (char const* const name : {"b:Y", "b:LowerY", "b:UpperY"}) {
        if (auto const figure = point.child(name)) ConvertText(store, figure, from, to);
      }
    }
  }
  for (pugi::xml_node const one : value.child("b:Values").children()) {
    for (char const* const name : {"b:Value", "b:Low", "b:High"}) {
      if (auto const figure = one.child(name)) ConvertText(store, figure, from, to);
    }
  }
  if (auto const symbol = value.child("b:UnitSymbol")) symbol.text().set(to.c_str());
  if (auto unit = value.child("b:Unit")) {
    unit.remove_children();
    WriteUnit(store, unit, to);
  }
}

std::map<std::string, std::string> const kKinds = {
    {"STXT", "ShortText"}, {"LTXT", "LongText"}, {"INPT", "Integer"}, {"LOGI", "Logical"},
    {"HLNK", "Hyperlink"}, {"DISC", "Discrete"}, {"DTTM", "Date"},    {"RNGE", "Range"},
    {"POIN", "Point"},     {"FILE", "File"},     {"PICT", "Picture"}, {"TABL", "Tabular"},
};

std::string KindOf(Attribute const& attribute) {
  if (attribute.type == "FUNC") {
    return attribute.isGridded ? "FloatFunctionalGridded" : "FloatFunctionalSeries";
  }
  return kKinds.at(attribute.type);
}

}  // namespace

std::string ElementName(Attribute const& attribute) { return KindOf(attribute) + "DataValue"; }

StoredValue ReadImportValue(Store& store, Checker& in, Attribute const& attribute,
                            std::string const& current) {
  StoredValue value;
  pugi::xml_document document;
  if (attribute.type == "TABL") {
    if (!current.empty()) document.load_string(("<v>" + current + "</v>").c_str());
    pugi::xml_node root = current.empty() ? document.append_child("v") : document.first_child();
    TableReader(store, attribute, value, root).Read(in.Required("zbt:TabularDataImportValue"));
    value.xml = Printed(root);
    return value;
  }
  pugi::xml_node root = document.append_child("v");
  pugi::xml_node const element = ImportElement(in, "zbt:" + ElementName(attribute), attribute.type);
  ValueReader reader(store, attribute, value);
  reader.Read(KindOf(attribute), element, root);
  reader.Finish();
  value.xml = Printed(root);
  return value;
}

void StoreValue(Store& store, int recordId, int attributeId, StoredValue const& value) {
  store.Insert(
      "INSERT INTO attribute_value (record_id, attribute_id, xml, low, high, text, version)"
      " VALUES (?, ?, ?, nullif(?, ''), nullif(?, ''), ?, 1)"
      " ON CONFLICT (record_id, attribute_id) DO UPDATE SET xml = excluded.xml,"
      " low = excluded.low, high = excluded.high, text = excluded.text, version = version + 1",
      {std::to_string(recordId), std::to_string(attributeId), value.xml, value.low, value.high,
       value.text});
}

std::string CurrentValue(Store& store, int recordId, int attributeId) {
  auto const rows =
      store.Rows("SELECT xml FROM attribute_value WHERE record_id = ? AND attribute_id = ?",
                 {std::to_string(recordId), std::to_string(attributeId)});
  return rows.empty() ? std::string() : rows[0].Text(0);
}

void WriteValue(Store& store, pugi::xml_node parent, Attribute const& attribute,
                std::string const& xml, UnitContext const& context, std::string const& url) {
  pugi::xml_node value = parent.append_child(("b:" + ElementName(attribute)).c_str());
  value.append_buffer(xml.data(), xml.size(), pugi::parse_default | pugi::parse_fragment,
                      pugi::encoding_utf8);
  // The content cannot carry an attribute of the value's own element; see ReadGridded.
  pugi::xml_node grid = value.child("b:Values");
  if (auto const decoration = grid.attribute("b:decoration")) {
    value.append_attribute("b:decoration") = decoration.value();
    grid.remove_attribute("b:decoration");
  }
  std::string const unit = TargetUnit(store, attribute.unit, context);
  if (unit != attribute.unit) ConvertFigures(store, value, attribute.unit, unit);
  if (!url.empty() && value.remove_child("b:data")) AddText(value, "b:URL", url);
}

}  // namespace sandbox
