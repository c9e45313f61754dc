#include "sandbox/model/Values.h"

#include <map>
#include <sstream>

#include "sandbox/model/TableReader.h"
#include "sandbox/model/ValueReader.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

std::string Printed(pugi::xml_node parent) {
  std::ostringstream text;
  for (pugi::xml_node const child : parent.children()) child.print(text, "", pugi::format_raw);
  return text.str();
}

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
    ReadTabular(store, attribute, in.Required("zbt:TabularDataImportValue"), root, value);
    value.xml = Printed(root);
    return value;
  }
  pugi::xml_node root = document.append_child("v");
  pugi::xml_node const element = ImportElement(in, "zbt:" + ElementName(attribute), attribute.type);
  ValueReader(store, attribute, value).Read(KindOf(attribute), element, root);
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
