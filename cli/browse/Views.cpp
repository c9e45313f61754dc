#include "cli/browse/Views.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <unordered_map>

#include "cli/browse/Cells.h"
#include "lumo/toolkit/Catalogue.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Source.h"
#include "lumo/toolkit/Text.h"

namespace cli::browse {
namespace {

/// Of what a search finds, so many are shown.
constexpr std::size_t kMostFound = 300;

lumo::Error Wrong(std::string const& text) { return {lumo::ErrorCode::InvalidArgument, text}; }

Json HeadJson(lumo::RecordHead const& head) {
  return {{"id", head.id.identity},
          {"name", head.name},
          {"fullName", head.fullName},
          {"folder", head.folder}};
}

/// Where the operator of what may be a condition begins and ends; {npos, npos} in mere words.
std::pair<std::size_t, std::size_t> OperatorIn(std::string const& text) {
  std::size_t begin = text.find_first_of("<>=");
  std::size_t end = text.find_first_not_of("<>=", begin);
  for (std::string const word : {" exists", " is missing", " contains ", " lacks ", " between "}) {
    std::size_t const at = text.find(word);
    if (at < begin) std::tie(begin, end) = std::pair(at, at + word.size());
  }
  return {begin, end};
}

/// Whether what looks like a condition is meant as one: it begins with the whole name of an
/// attribute, or compares a name with a figure.
bool IsMeantAsCondition(std::string const& text, std::vector<lumo::Attribute> const& attributes) {
  auto const [begin, end] = OperatorIn(text);
  std::string name = text.substr(0, begin);
  name.erase(name.find_last_not_of(" !") + 1);
  bool const isKnown = std::any_of(attributes.begin(), attributes.end(), [&](auto const& one) {
    return lumo::EqualIgnoringCase(one.name, name);
  });
  std::size_t const next = text.find_first_not_of(' ', std::min(end, text.size()));
  bool const isFigure =
      next != std::string::npos && std::string_view("0123456789-.").find(text[next]) < 12;
  return isKnown || (isFigure && name.find_first_not_of(' ') != std::string::npos);
}

Json EndJson(lumo::Value const& end, lumo::UnitSystem const& system) {
  auto const figure = lumo::NumberIn(system.Convert(end, lumo::ConvertedDigits::Shown));
  return figure ? JsonOf(*figure) : Json();
}

Json AttributeJson(lumo::Attribute const& attribute, lumo::Extent const& extent,
                   lumo::UnitSystem const& system) {
  using lumo::AttributeType;
  bool const isNumeric =
      attribute.type == AttributeType::Integer || attribute.type == AttributeType::Number ||
      attribute.type == AttributeType::Range || attribute.type == AttributeType::Curve;
  return {{"name", attribute.name},
          {"type", lumo::NameOf(attribute.type)},
          {"unit", system.UnitFor(attribute.unit)},
          {"isNumeric", isNumeric},
          {"isPicture", attribute.type == AttributeType::Picture},
          {"least", EndJson(extent.least, system)},
          {"most", EndJson(extent.most, system)}};
}

Conditions ConditionsIn(std::string const& text) {
  Conditions conditions;
  if (text.empty()) return conditions;
  Json const json = Json::parse(text, nullptr, false);
  if (!json.is_object()) throw Wrong("the conditions \"" + text + "\" are not an object of JSON");
  for (auto const& [name, value] : json.items()) {
    if (value.is_number()) {
      conditions[name] = value.get<double>();
    } else if (value.is_string()) {
      conditions[name] = value.get<std::string>();
    } else {
      throw Wrong("the condition on \"" + name + "\" is neither a number nor a word");
    }
  }
  return conditions;
}

std::vector<lumo::RecordId> IdsIn(Query const& query, TableData const& table) {
  std::vector<lumo::RecordId> ids;
  for (std::string const& id : All(query, "id")) {
    ids.push_back({table.Info().DatabaseKey(), IdentityIn(id), ""});
  }
  if (ids.size() == 1) ids[0].guid = Optional(query, "version");
  return ids;
}

/// Places of folders in a list without repeats.
class FolderList {
 public:
  std::size_t PlaceOf(std::string const& folder) {
    auto const [there, isNew] = m_places.try_emplace(folder, m_list.size());
    if (isNew) m_list.push_back(folder);
    return there->second;
  }
  Json const& List() const { return m_list; }

 private:
  std::unordered_map<std::string, std::size_t> m_places;
  Json m_list = Json::array();
};

using DependenceMap = std::map<std::string, Dependence>;

Json JsonOfColumn(std::vector<lumo::RecordHead> const& records,
                  std::unordered_map<int, lumo::Value> const& values,
                  lumo::UnitSystem const& system, Conditions const& conditions,
                  DependenceMap& dependences) {
  Json low = Json::array();
  Json high = Json::array();
  for (lumo::RecordHead const& record : records) {
    auto const there = values.find(record.id.identity);
    std::optional<Cell> cell;
    if (there != values.end()) {
      lumo::Value const value = system.Convert(there->second, lumo::ConvertedDigits::Enough);
      Collect(value, dependences);
      cell = CellOf(value, conditions);
    }
    low.push_back(cell ? JsonOf(cell->low) : Json());
    high.push_back(cell ? JsonOf(cell->high) : Json());
  }
  return {{"low", std::move(low)}, {"high", std::move(high)}};
}

}  // namespace

std::string Needed(Query const& query, std::string const& name) {
  auto const there = query.find(name);
  if (there == query.end()) throw Wrong("the address lacks the parameter \"" + name + "\"");
  return there->second;
}

std::string Optional(Query const& query, std::string const& name) {
  auto const there = query.find(name);
  return there == query.end() ? "" : there->second;
}

std::vector<std::string> All(Query const& query, std::string const& name) {
  std::vector<std::string> all;
  auto const [begin, end] = query.equal_range(name);
  for (auto at = begin; at != end; ++at) all.push_back(at->second);
  return all;
}

int IdentityIn(std::string const& text) {
  int identity = 0;
  if (!lumo::ReadInteger(text, identity) || identity == 0) {
    throw Wrong("\"" + text + "\" is not the identity of a record");
  }
  return identity;
}

std::shared_ptr<TableData> Views::TableOf(Query const& query) const {
  std::pair<std::string, std::string> const name = {Needed(query, "db"), Needed(query, "table")};
  {
    std::lock_guard const lock(m_mutex);
    auto const there = m_tables.find(name);
    if (there != m_tables.end()) return there->second;
  }
  auto const opened = std::make_shared<TableData>(m_client, name.first, name.second, m_cancel);
  std::lock_guard const lock(m_mutex);
  return m_tables.try_emplace(name, opened).first->second;
}

Json Views::Server() const {
  Json databases = Json::array();
  for (lumo::DatabaseInfo const& database : m_client.Databases()) {
    databases.push_back({{"key", database.key},
                         {"name", database.name},
                         {"tables", m_client.Tables(database.key)}});
  }
  return {{"url", m_client.Url()}, {"databases", databases}};
}

Json Views::Table(Query const& query) const {
  auto const table = TableOf(query);
  auto const system =
      table->Info().SystemOf(*table->Link(), Optional(query, "units"), Optional(query, "currency"));
  auto const extents = lumo::ExtentsOf(table->Table());
  auto const& known = table->Table().Attributes();
  Json attributes = Json::array();
  for (std::size_t i = 0; i < known.size(); ++i) {
    attributes.push_back(AttributeJson(known[i], extents.at(i), system));
  }
  return {{"attributes", attributes},
          {"unitSystems", table->Table().UnitSystems()},
          {"currencies", table->Table().Currencies()}};
}

Json Views::Tree(Query const& query) const {
  auto const table = TableOf(query);
  auto const link = table->Link();
  std::string const folder = Optional(query, "folder");
  auto const request = GetChildNodes::CreateOne();
  lumo::RecordId parent = {table->Info().DatabaseKey(), 0, ""};
  if (folder.empty()) {
    parent = lumo::FolderTree(table->Info()).Root(*link).id;
  } else {
    parent.identity = IdentityIn(folder);
  }
  request->SetParent(lumo::ReferenceTo(parent));
  auto const found = link->Ask<GetChildNodesResponse>([&](auto* into) {
    link->Browse()->GetGetChildNodesImpl()->RequestChildNodes(request, into);
  });
  Json children = Json::array();
  for (auto const& child : found->AccessTreeRecords()) {
    if (!child || !child->GetRecordReference()) continue;
    children.push_back({{"id", child->GetRecordReference()->GetIdentity()},
                        {"name", child->GetShortName()},
                        {"fullName", child->GetLongName()},
                        {"isFolder", child->GetHasChildren() || child->GetType() == "Folder"}});
  }
  return {{"children", children}};
}

Json Views::Search(Query const& query) const {
  auto const table = TableOf(query);
  std::string const text = Needed(query, "text");
  auto const find = [&](bool isCondition) -> Json {
    auto const what = std::make_shared<lumo::SelectionParts>();
    what->table = std::make_shared<lumo::OpenedTable>(m_client.Pool(), table->Info().DatabaseKey(),
                                                      table->Info().Name());
    if (isCondition) {
      what->conditions.emplace_back(text, lumo::Match::Overlap);
    } else {
      what->text = text;
    }
    auto const link = table->Link();
    lumo::RecordSource source(what, [] { return kMostFound; });
    bool const isWhole = Optional(query, "all") == "1";
    Json found = Json::array();
    while (auto const chunk = source.Next(*link)) {
      for (auto const& head : *chunk) found.push_back(HeadJson(head));
      if (!isWhole) break;
    }
    return {{"isCondition", isCondition}, {"total", source.Total()}, {"records", found}};
  };
  if (OperatorIn(text).first == std::string::npos) return find(false);
  try {
    return find(true);
  } catch (lumo::Error const& error) {
    bool const isOfText = error.Code() == lumo::ErrorCode::InvalidArgument ||
                          error.Code() == lumo::ErrorCode::NotFound ||
                          error.Code() == lumo::ErrorCode::Ambiguous;
    if (!isOfText || IsMeantAsCondition(text, table->Table().Attributes())) throw;
    Json found = find(false);
    if (found["total"] == 0) throw;
    return found;
  }
}

Json Views::Heads(Query const& query) const {
  auto const table = TableOf(query);
  std::vector<lumo::RecordHead> heads;
  for (lumo::RecordId const& id : IdsIn(query, *table)) heads.push_back({id, "", "", ""});
  lumo::FolderPaths().Fill(*table->Link(), heads);
  Json records = Json::array();
  for (auto const& head : heads) records.push_back(HeadJson(head));
  return {{"records", records}};
}

Json Views::Records(Query const& query) const {
  auto const table = TableOf(query);
  auto const ids = IdsIn(query, *table);
  lumo::ReadOptions options;
  options.unitSystem = Optional(query, "units");
  options.digits = lumo::ConvertedDigits::Enough;
  options.currency = Optional(query, "currency");
  options.cancel = m_cancel;
  Json records = Json::array();
  for (lumo::Record const& record : table->Table().All().WithIds(ids).Read({}, options)) {
    Json values = Json::object();
    for (std::size_t i = 0; i < record.Values().size(); ++i) {
      Json value = JsonOf(record.Values()[i]);
      if (!value.is_null()) values[record.Attributes()[i].name] = std::move(value);
    }
    Json one = HeadJson(record.Head());
    one["values"] = std::move(values);
    records.push_back(std::move(one));
  }
  return {{"records", records}};
}

Json Views::Columns(Query const& query) const {
  auto const table = TableOf(query);
  auto const names = All(query, "attribute");
  if (names.empty()) throw Wrong("the address names no attribute");
  auto const system =
      table->Info().SystemOf(*table->Link(), Optional(query, "units"), Optional(query, "currency"));
  Conditions const conditions = ConditionsIn(Optional(query, "at"));
  if (Optional(query, "anew") == "1") table->Forget();
  std::vector<std::string> exact;
  exact.reserve(names.size());
  for (std::string const& name : names) exact.push_back(table->Table().FindAttribute(name).name);
  TableColumns const read = table->Columns(exact);
  DependenceMap dependences;
  Json columns = Json::array();
  for (std::size_t i = 0; i < exact.size(); ++i) {
    Json column = JsonOfColumn(read.records, *read.columns[i], system, conditions, dependences);
    column["name"] = exact[i];
    column["unit"] = system.UnitFor(table->Table().FindAttribute(exact[i]).unit);
    columns.push_back(std::move(column));
  }
  FolderList folders;
  Json records = Json::array();
  for (lumo::RecordHead const& record : read.records) {
    records.push_back({record.id.identity, record.name, folders.PlaceOf(record.folder)});
  }
  Json parameters = Json::array();
  for (auto const& [name, one] : dependences) {
    parameters.push_back({{"name", name},
                          {"unit", one.unit},
                          {"least", JsonOf(one.least)},
                          {"most", JsonOf(one.most)},
                          {"words", one.words}});
  }
  return {{"folders", folders.List()},
          {"records", records},
          {"columns", columns},
          {"parameters", parameters}};
}

WorkbookChoice Views::Workbook(Query const& query) const {
  auto const table = TableOf(query);
  WorkbookChoice choice;
  choice.database = table->Info().DatabaseKey();
  choice.table = table->Info().Name();
  choice.records = IdsIn(query, *table);
  choice.where = Optional(query, "where");
  choice.text = Optional(query, "text");
  choice.attributes = All(query, "attribute");
  choice.unitSystem = Optional(query, "units");
  choice.currency = Optional(query, "currency");
  return choice;
}

Json Views::Progress(Query const& query) const {
  auto const [done, total] = TableOf(query)->Progress();
  return {{"done", done}, {"total", total}};
}

Bytes Views::File(Query const& query) const {
  auto const table = TableOf(query);
  lumo::RecordId const id = {table->Info().DatabaseKey(), IdentityIn(Needed(query, "id")),
                             Optional(query, "version")};
  auto const& attribute = table->Table().FindAttribute(Needed(query, "attribute"));
  lumo::ReadOptions options;
  options.withFiles = true;
  options.cancel = m_cancel;
  std::vector<lumo::Record> records;
  table->Table().All().WithIds({id}).Read({attribute.name}, options).NextChunk(records);
  auto const* const file =
      records.empty() ? nullptr : std::get_if<lumo::File>(&records[0].Values()[0]);
  if (!file) throw lumo::Error(lumo::ErrorCode::NotFound, "the record holds no such file");
  return {file->name,
          {file->data.begin(), file->data.end()},
          attribute.type == lumo::AttributeType::Picture};
}

Json JsonOf(lumo::Error const& error, std::string const& advice) {
  return {{"error",
           {{"text", error.what()},
            {"code", lumo::NameOf(error.Code())},
            {"advice", advice},
            {"operation", error.Operation()},
            {"detail", error.TransportText()},
            {"tries", error.Attempts().size()}}}};
}

}  // namespace cli::browse
