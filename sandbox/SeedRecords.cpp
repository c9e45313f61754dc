#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "Base64.h"
#include "References.h"
#include "SeedData.h"
#include "Soap.h"
#include "Values.h"

namespace sandbox {
namespace {

constexpr char kKey[] = "ENG_MATERIALS";
constexpr int kGeneratedInFolder = 1000;
/// A picture of one pixel in PNG.
constexpr char kPixel[] =
    "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJg"
    "gg==";

/// 64-bit FNV-1a.
std::uint64_t Hash(std::string const& text, std::uint64_t hash) {
  for (char const c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 1099511628211ULL;
  }
  return hash;
}

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
  void Fill(pugi::xml_node node, std::string const& text) {
    std::string const& type = m_attribute.type;
    if (type == "RNGE") return FillRange(node, text, m_attribute.unit);
    if (type == "POIN") return FillPoints(node, text);
    if (type == "DISC") return FillWords(node, text);
    if (type == "HLNK") return FillTexts(node, {"Value", "Description"}, Split(text, ','));
    if (type == "PICT") return FillTexts(node, {"data", "contentType"}, {kPixel, "image/png"});
    if (type == "FILE") return FillFile(node, text);
    if (type == "TABL") return FillTable(node, text);
    if (type == "FUNC")
      return m_attribute.isGridded ? FillGrid(node, text) : FillSeries(node, text);
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

  static void FillUnit(pugi::xml_node node, std::string const& unit) {
    node.append_attribute("zbt:isNotApplicable") = "false";
    AddText(node, "zbt:Estimated", "false");
    AddText(node, "zbt:UnitSymbol", unit);
  }

  static void FillRange(pugi::xml_node node, std::string const& text, std::string const& unit) {
    FillUnit(node, unit);
    auto const [low, high] = Ends(text);
    AddText(node, "zbt:LowValue", low);
    AddText(node, "zbt:HighValue", high);
  }

  void FillPoints(pugi::xml_node node, std::string const& text) {
    FillUnit(node, m_attribute.unit);
    FillParameters(node);
    for (std::string const& part : Split(text, ';')) {
      std::vector<std::string> const point = Split(part, '@');
      pugi::xml_node element = node.append_child("zbt:Point");
      AddText(element, "zbt:Value", point.at(0));
      pugi::xml_node values = element.append_child("zbt:ValueParameters");
      if (point.size() < 2) continue;
      for (std::string const& condition : Split(point[1], ',')) {
        FillCondition(values.append_child("zbt:ParameterWithValue"), condition);
      }
    }
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

  // ---- parameters and curves

  /// In the order in which the attribute names them; the first is the x axis of its curves.
  std::vector<Row> ParametersOfAttribute() {
    return m_store.Rows(
        "SELECT p.name, p.unit, p.type FROM attribute_parameter a JOIN parameter p"
        " ON p.id = a.parameter_id WHERE a.attribute_id = ? ORDER BY a.rowid",
        {std::to_string(m_attribute.id)});
  }

  void FillReference(pugi::xml_node node, std::string const& name) {
    AddText(node, "zbt:dbKey", m_dbKey);
    AddText(node, "zbt:name", name);
  }

  static void FillUnitInformation(pugi::xml_node node, std::string const& unit) {
    AddText(node, "zbt:UnitName", unit);
    AddText(node, "zbt:UnitSymbol", unit);
  }

  void FillParameter(pugi::xml_node node, Row const& parameter) {
    FillReference(node.append_child("zbt:ParameterReference"), parameter.Text(0));
    AddText(node, "zbt:Name", parameter.Text(0));
    FillUnitInformation(node.append_child("zbt:Unit"), parameter.Text(1));
  }

  void FillParameters(pugi::xml_node node) {
    pugi::xml_node list = node.append_child("zbt:Parameters");
    for (Row const& parameter : ParametersOfAttribute()) {
      FillParameter(list.append_child("zbt:Parameter"), parameter);
    }
  }

  static void FillParameterValue(pugi::xml_node node, std::string const& text, bool isNumeric) {
    node.append_attribute("xsi:type") =
        isNumeric ? "zbt:NumericParameterValue" : "zbt:DiscreteParameterValue";
    AddText(node, "zbt:Value", text);
  }

  /// "Parameter=value"
  void FillCondition(pugi::xml_node node, std::string const& text) {
    std::vector<std::string> const parts = Split(text, '=');
    FillReference(node.append_child("zbt:Parameter"), parts.at(0));
    bool const isNumeric = parts[0] != "Condition";
    FillParameterValue(node.append_child("zbt:ParameterValue"), parts.at(1), isNumeric);
  }

  void FillConstraints(pugi::xml_node node, std::string const& text) {
    pugi::xml_node list = node.append_child("zbt:Constraints");
    for (std::string const& condition : Split(text, ',')) {
      pugi::xml_node constraint = list.append_child("zbt:Constraint");
      FillCondition(constraint, condition);
      AddText(constraint, "zbt:Label", condition);
    }
  }

  void FillCurveHead(pugi::xml_node node) {
    FillParameters(node);
    FillUnitInformation(node.append_child("zbt:Unit"), m_attribute.unit);
    node.append_attribute("zbt:isNotApplicable") = "false";
  }

  void FillSeries(pugi::xml_node node, std::string const& text) {
    FillCurveHead(node);
    pugi::xml_node graph = node.append_child("zbt:Graph");
    graph.append_attribute("zbt:HideGraph") = "false";
    graph.append_attribute("zbt:LogarithmicYAxis") = "false";
    pugi::xml_node series = graph.append_child("zbt:Series");
    series.append_attribute("zbt:decoration") = "LinesAndMarkers";
    std::vector<std::string> const parts = Split(text, '@');
    FillConstraints(series, parts.size() > 1 ? parts[1] : "");
    pugi::xml_node points = series.append_child("zbt:XYPoints");
    for (std::string const& part : Split(parts.at(0), ';')) {
      std::vector<std::string> const figures = Split(part, ' ');
      bool const isRange = figures.size() > 2;
      pugi::xml_node point = points.append_child("zbt:XYPoint");
      point.append_attribute("xsi:type") = isRange ? "zbt:XYRange" : "zbt:XYPoint";
      FillParameterValue(point.append_child("zbt:X"), figures.at(0), true);
      AddText(point, "zbt:Estimated", "false");
      AddText(point, isRange ? "zbt:LowerY" : "zbt:Y", figures.at(1));
      if (isRange) AddText(point, "zbt:UpperY", figures[2]);
    }
    FillParameter(graph.append_child("zbt:XAxisParameter"), ParametersOfAttribute().at(0));
  }

  void FillGrid(pugi::xml_node node, std::string const& text) {
    FillCurveHead(node);
    node.append_attribute("zbt:decoration") = "Markers";
    pugi::xml_node values = node.append_child("zbt:Values");
    for (std::string const& part : Split(text, ';')) {
      std::vector<std::string> const one = Split(part, '@');
      pugi::xml_node value = values.append_child("zbt:Value");
      value.append_attribute("xsi:type") = "zbt:FloatFunctionalPointValue";
      FillConstraints(value, one.size() > 1 ? one[1] : "");
      AddText(value, "zbt:Estimated", "false");
      AddText(value, "zbt:Value", one.at(0));
    }
    FillParameter(node.append_child("zbt:DefaultXAxisParameter"), ParametersOfAttribute().at(0));
  }

  Store& m_store;
  Attribute const& m_attribute;
  std::string m_dbKey;
};

/// Makes records of one table.
class TableFiller {
 public:
  TableFiller(Store& store, std::string const& dbKey, std::string const& table)
      : m_store(store), m_table(FindTable(store, {0, "", table, dbKey})) {
    m_root = AddRecord(store, {m_table.id, 0, m_table.name, m_table.name, true, State()});
  }

  int AddIn(std::string const& folders, std::string const& name, std::string const& longName) {
    int parent = m_root;
    std::string path;
    for (std::string const& folder : Split(folders, '/')) {
      path += "/" + folder;
      auto const [entry, isNew] = m_folders.try_emplace(path, 0);
      if (isNew) {
        entry->second = AddRecord(m_store, {m_table.id, parent, folder, folder, true, State()});
      }
      parent = entry->second;
    }
    int const record = AddRecord(m_store, {m_table.id, parent, name, longName, false, State()});
    m_store.Insert(
        "INSERT INTO record_subset SELECT ?, s.id FROM subset s WHERE s.table_id = ? AND"
        " (s.name LIKE 'All %' OR s.name = ?)",
        {std::to_string(record), std::to_string(m_table.id), Split(folders + "/", '/').at(0)});
    m_records[name] = record;
    return record;
  }

  /// "subsets" names, with commas between, the subsets that the record is in besides.
  void SetValue(int record, std::string const& name, std::string const& text) {
    if (text.empty() || text == "-") return;
    if (name == "subsets") return PutInto(record, Split(text, ','));
    auto const [entry, isNew] = m_attributes.try_emplace(name);
    if (isNew) {
      auto const found =
          Attributes(m_store, "a.table_id = ? AND a.name = ?", {std::to_string(m_table.id), name});
      if (found.empty()) throw std::runtime_error("no attribute " + name + " in " + m_table.name);
      entry->second = found[0];
    }
    ValueBuilder builder(m_store, entry->second, m_table.dbKey);
    StoreValue(m_store, record, entry->second.id, builder.Build(text));
  }

  /// One record to a line, the first line names the columns. Lines may leave out the last ones.
  void AddLines(char const* data, Content content) {
    auto const lines = Lines(data, content);
    if (lines.empty()) return;
    std::vector<std::string> const& columns = lines[0];
    for (auto line = lines.begin() + 1; line != lines.end(); ++line) {
      int const record = AddIn(line->at(0), line->at(1), line->at(2));
      if (line->size() > columns.size()) {
        throw std::runtime_error("too many columns for " + line->at(1));
      }
      for (std::size_t i = 3; i < line->size(); ++i) SetValue(record, columns[i], line->at(i));
    }
  }

  /// The record of that name, made at the top when it is new.
  int Named(std::string const& name) {
    auto const found = m_records.find(name);
    return found != m_records.end() ? found->second : AddIn("", name, name);
  }

  /// The record of that name, which is there.
  int Known(std::string const& name) const {
    auto const found = m_records.find(name);
    if (found == m_records.end()) throw std::runtime_error(m_table.name + " lack " + name);
    return found->second;
  }

 private:
  void PutInto(int record, std::vector<std::string> const& subsets) {
    for (std::string const& name : subsets) {
      std::string const subset = m_store
                                     .Only("SELECT id FROM subset WHERE table_id = ? AND name = ?",
                                           {std::to_string(m_table.id), name})
                                     .Text(0);
      m_store.Insert("INSERT OR IGNORE INTO record_subset VALUES (?, ?)",
                     {std::to_string(record), subset});
    }
  }

  std::string State() const { return m_table.dbKey == kKey ? "Released" : "Unversioned"; }

  Store& m_store;
  Table m_table;
  int m_root = 0;
  std::map<std::string, int> m_folders;
  std::map<std::string, int> m_records;
  std::map<std::string, Attribute> m_attributes;
};

void AddElements(TableFiller& elements, Content content) {
  char const* const names[] = {
      "Symbol",        "Atomic number", "Atomic weight",     "Density at 20 degC",
      "Melting point", "Boiling point", "Crystal structure", "Electronegativity (Pauling)",
      "Discovered"};
  std::size_t const columns[] = {0, 2, 3, 4, 5, 6, 7, 8, 9};
  for (std::vector<std::string> const& line : Lines(kElementData, content)) {
    int const record = elements.AddIn("", line.at(0), line.at(1));
    for (std::size_t i = 0; i < std::size(columns); ++i) {
      std::string text = line.at(columns[i]);
      if (columns[i] == 9 && text != "-") text += "-01-01T00:00:00";
      elements.SetValue(record, names[i], text);
    }
    if (line.size() > 10) elements.SetValue(record, "subsets", line[10]);
  }
}

/// Two older or newer versions of one record, and one that was withdrawn, so that every state
/// occurs.
void AddVersions(Store& store) {
  constexpr char kCopy[] =
      "INSERT INTO record (table_id, parent_id, history_id, guid, history_guid, short_name,"
      " long_name, version, state, is_current) SELECT table_id, parent_id, history_id, ?,"
      " history_guid, short_name, long_name, ?, ?, 0 FROM record"
      " WHERE short_name = 'AW-6061-T6' AND is_current = 1";
  store.Run("UPDATE record SET version = 2 WHERE short_name = 'AW-6061-T6'");
  store.Insert(kCopy, {GuidOf("AW-6061-T6/1"), "1", "Superseded"});
  store.Insert(kCopy, {GuidOf("AW-6061-T6/3"), "3", "Unreleased"});
  store.Run("UPDATE record SET state = 'Withdrawn' WHERE short_name = 'PEEK'");
}

void AddLinks(Store& store, std::map<std::string, TableFiller*> const& tables, Content content) {
  struct Group {
    char const* name;
    char const* to;
    char const* reverse;
    char const* standardName;
  };
  constexpr Group kGroups[] = {
      {"Producers", "Material Producers", "Materials produced", "Producers"},
      {"Processes", "Processes", "Materials processed", ""},
      {"References", "References", "Materials described", "References"}};
  struct Made {
    std::string id;
    char const* to;
  };
  std::map<std::string, Made> groups;
  for (Group const& group : kGroups) {
    store.Insert(
        "INSERT INTO record_link_group (from_table_id, to_table_id, name, reverse_name, kind,"
        " standard_name) SELECT f.id, t.id, ?, ?, 'static', ? FROM data_table f, data_table t"
        " WHERE f.name = 'Materials' AND t.name = ?",
        {group.name, group.reverse, group.standardName, group.to});
    groups[group.name] = {store.LastId(), group.to};
  }
  for (std::vector<std::string> const& line : Lines(kLinkData, content)) {
    Made const& group = groups.at(line.at(0));
    TableFiller const& targets = *tables.at(group.to);
    for (std::string const& target : Split(line.at(2), ';')) {
      // The first version of a record gives its history the identity.
      store.Insert(
          "INSERT INTO record_link SELECT ?, f.history_id, t.history_id, ?, '' FROM record f,"
          " record t WHERE f.id = ? AND t.id = ?",
          {group.id, line.size() > 3 ? line[3] : "",
           std::to_string(tables.at("Materials")->Known(line[1])),
           std::to_string(targets.Known(target))});
    }
  }
}

}  // namespace

std::string Trimmed(std::string const& text) {
  std::size_t const first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string> Split(std::string const& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);) parts.push_back(Trimmed(part));
  return parts;
}

std::vector<std::vector<std::string>> Lines(char const* data, Content content) {
  std::vector<std::vector<std::string>> lines;
  if (content == Content::Empty) return lines;
  std::istringstream in(data);
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    bool const isMinimal = line[0] == '*';
    if (content == Content::Minimal && !isMinimal) continue;
    lines.push_back(Split(isMinimal ? line.substr(1) : line, '|'));
  }
  return lines;
}

std::string GuidOf(std::string const& name) {
  std::uint64_t const high = Hash(name, 14695981039346656037ULL);
  std::uint64_t const low = Hash(name, high);
  char text[37];
  std::snprintf(text, sizeof text, "%08x-%04x-5%03x-a%03x-%012llx",
                static_cast<unsigned>(high >> 32U), static_cast<unsigned>((high >> 16U) & 0xFFFFU),
                static_cast<unsigned>(high & 0xFFFU), static_cast<unsigned>(low >> 52U),
                static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFULL));
  return text;
}

int AddRecord(Store& store, NewRecord const& record) {
  std::string const last = store.Only("SELECT coalesce(max(id), 0) FROM record").Text(0);
  store.Insert(
      "INSERT INTO record (table_id, parent_id, guid, history_guid, short_name, long_name,"
      " is_folder, state, color) VALUES (?, nullif(?, '0'), ?, ?, ?, ?, ?, ?, ?)",
      {std::to_string(record.tableId), std::to_string(record.parentId), GuidOf("record " + last),
       GuidOf("history " + last), record.shortName, record.longName, record.isFolder ? "1" : "0",
       record.state, record.isFolder ? "Navy" : "Black"});
  std::string const id = store.LastId();
  store.Insert("UPDATE record SET history_id = id WHERE id = ?", {id});
  return std::stoi(id);
}

void AddRecords(Store& store, Content content) {
  std::map<std::string, TableFiller*> tables;
  std::vector<std::unique_ptr<TableFiller>> fillers;
  for (std::string const name : {"Materials", "Processes", "Material Producers", "References"}) {
    fillers.push_back(std::make_unique<TableFiller>(store, kKey, name));
    tables[name] = fillers.back().get();
  }
  tables.at("Materials")->AddLines(kMetalData, content);
  tables.at("Materials")->AddLines(kMaterialData, content);
  tables.at("Processes")->AddLines(kProcessData, content);
  tables.at("Material Producers")->AddLines(kProducerData, content);
  tables.at("References")->AddLines(kReferenceData, content);
  for (std::vector<std::string> const& line : Lines(kValueData, content)) {
    TableFiller& table = *tables.at(line.at(0));
    // What has no file of its own in the minimal content begins with its first value.
    bool const isNew = content == Content::Minimal && line.at(0) != "Materials";
    int const record = isNew ? table.Named(line.at(1)) : table.Known(line.at(1));
    table.SetValue(record, line.at(2), line.at(3));
  }
  if (content != Content::Empty) AddVersions(store);
  AddLinks(store, tables, content);
  TableFiller elements(store, "ELEMENTS", "Elements");
  AddElements(elements, content);
}

void AddGeneratedRecords(Store& store, int count) {
  Transaction transaction(store);
  Table const table = FindTable(store, {0, "", "Materials", kKey});
  int const root =
      Records(store, "r.table_id = ? AND r.parent_id IS NULL", {std::to_string(table.id)}).at(0).id;
  int const top = AddRecord(store, {table.id, root, "Generated", "Generated records", true});
  int folder = top;
  for (int i = 1; i <= count; ++i) {
    std::string const number = std::to_string(i);
    if (i % kGeneratedInFolder == 1) {
      std::string const name = "From " + number;
      folder = AddRecord(store, {table.id, top, name, name, true});
    }
    int const record =
        AddRecord(store, {table.id, folder, "GEN-" + number, "Generated material " + number});
    auto const set = [&](std::string const& name, std::string const& text) {
      static std::map<std::string, Attribute> known;
      auto const [entry, isNew] = known.try_emplace(name);
      if (isNew) {
        entry->second =
            Attributes(store, "a.table_id = ? AND a.name = ?", {std::to_string(table.id), name})
                .at(0);
      }
      ValueBuilder builder(store, entry->second, table.dbKey);
      StoreValue(store, record, entry->second.id, builder.Build(text));
    };
    set("Designation", "GEN " + number);
    set("Typical uses", "Made up for trials with many records, number " + number + ".");
    set("Density", std::to_string(1000 + i % 8000) + " " + std::to_string(1010 + i % 8000));
    set("Young's modulus", std::to_string(1 + i % 400));
    set("Tensile strength", std::to_string(100 + i % 900) + " " + std::to_string(120 + i % 900));
    set("Recyclable", i % 2 == 0 ? "yes" : "no");
    set("Durability: sea water", i % 3 == 0 ? "Excellent" : "Limited use");
    set("Number of suppliers", std::to_string(i % 40));
    set("Last reviewed", "2026-02-03T04:05:06");
    set("Hardness by condition", std::to_string(50 + i % 300));
  }
  transaction.Commit();
}

}  // namespace sandbox
