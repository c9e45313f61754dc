#include "sandbox/seed/ValueBuilder.h"

#include <utility>
#include <vector>

#include "sandbox/seed/CurveFiller.h"
#include "sandbox/seed/Lines.h"
#include "sandbox/wire/Base64.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

/// A picture of one pixel in PNG.
constexpr char kPixel[] =
    "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJg"
    "gg==";

/// "x" or "x y" with the second the same as the first when it is missing.
std::pair<std::string, std::string> Ends(std::string const& text) {
  std::size_t const space = text.find(' ');
  if (space == std::string::npos) return {text, text};
  return {text.substr(0, space), text.substr(space + 1)};
}

/// Builds a value in the form of an import from the form of the data files.
class ValueBuilder {
 public:
  ValueBuilder(Store& store, Attribute const& attribute, std::string dbKey)
      : m_store(store), m_attribute(attribute), m_dbKey(std::move(dbKey)) {}

  StoredValue Build(std::string const& text) {
    pugi::xml_document document;
    pugi::xml_node root = document.append_child("v");
    bool const isTable = m_attribute.type == "TABL";
    std::string const name = isTable ? "TabularDataImportValue" : ElementName(m_attribute);
    Fill(root.append_child(("zbt:" + name).c_str()), text);
    Checker in(root);
    return ReadImportValue(m_store, in, m_attribute, "");
  }

 private:
  CurveFiller Curves() { return {m_store, m_attribute, m_dbKey}; }

  void Fill(pugi::xml_node node, std::string const& text) {
    std::string const& type = m_attribute.type;
    if (type == "RNGE") return FillRange(node, text, m_attribute.unit);
    if (type == "POIN") return Curves().FillPoints(node, text);
    if (type == "DISC") return FillWords(node, text);
    if (type == "HLNK") return FillTexts(node, {"Value", "Description"}, Split(text, ','));
    if (type == "PICT") return FillTexts(node, {"data", "contentType"}, {kPixel, "image/png"});
    if (type == "FILE") return FillFile(node, text);
    if (type == "TABL") return FillTable(node, text);
    if (type == "FUNC")
      return m_attribute.isGridded ? Curves().FillGrid(node, text)
                                   : Curves().FillSeries(node, text);
    if (type == "LOGI") return SetText(node, text == "yes" ? "true" : "false");
    std::string plain = text;
    for (std::size_t at = 0; (at = plain.find("\\n", at)) != std::string::npos;) {
      plain.replace(at, 2, "\n");
    }
    SetText(node, plain);
  }

  static void SetText(pugi::xml_node node, std::string const& text) {
    node.text().set(text.c_str());
  }

  static void FillRange(pugi::xml_node node, std::string const& text, std::string const& unit) {
    FillUnit(node, unit);
    auto const [low, high] = Ends(text);
    AddText(node, "zbt:LowValue", low);
    AddText(node, "zbt:HighValue", high);
  }

  static void FillWords(pugi::xml_node node, std::string const& text) {
    for (std::string const& word : Split(text, ',')) {
      AddText(node, "zbt:Discrete", word).append_attribute("zbt:order") = 0;
    }
  }

  static void FillTexts(pugi::xml_node node, std::vector<std::string> const& names,
                        std::vector<std::string> const& texts) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      AddText(node, ("zbt:" + names[i]).c_str(), i < texts.size() ? texts[i] : "");
    }
  }

  static void FillFile(pugi::xml_node node, std::string const& text) {
    std::vector<std::string> parts = Split(text, ',');
    std::string content;
    for (std::size_t i = 3; i < parts.size(); ++i) content += (i > 3 ? ", " : "") + parts[i];
    FillTexts(node, {"data", "contentType", "fileName", "description"},
              {EncodeBase64(content), parts.at(1), parts.at(0), parts.at(2)});
  }

  void FillTable(pugi::xml_node node, std::string const& text) {
    auto const columns = m_store.Rows(
        "SELECT name, type, unit FROM tabular_column WHERE attribute_id = ? ORDER BY position",
        {std::to_string(m_attribute.id)});
    pugi::xml_node rows = node.append_child("zbt:Rows");
    for (std::string const& line : Split(text, ';')) {
      pugi::xml_node row = rows.append_child("zbt:Row");
      pugi::xml_node cells = row.append_child("zbt:Cells");
      std::vector<std::string> const parts = Split(line, ',');
      for (std::size_t i = 0; i < parts.size() && i < columns.size(); ++i) {
        pugi::xml_node cell = cells.append_child("zbt:Cell");
        cell.append_attribute("zbt:columnName") = columns[i].Text(0).c_str();
        if (columns[i].Text(1) == "STXT") {
          AddText(cell, "zbt:ShortText", parts[i]);
        } else {
          pugi::xml_node point = cell.append_child("zbt:Point");
          FillUnit(point, columns[i].Text(2));
          point.append_child("zbt:Parameters");
          pugi::xml_node value = point.append_child("zbt:Point");
          AddText(value, "zbt:Value", parts[i]);
          value.append_child("zbt:ValueParameters");
        }
      }
    }
  }

  Store& m_store;
  Attribute const& m_attribute;
  std::string m_dbKey;
};

}  // namespace

StoredValue BuildValue(Store& store, Attribute const& attribute, std::string const& dbKey,
                       std::string const& text) {
  return ValueBuilder(store, attribute, dbKey).Build(text);
}

}  // namespace sandbox
