#include "sandbox/seed/TableFiller.h"

#include <stdexcept>

#include "sandbox/model/Records.h"
#include "sandbox/seed/ValueBuilder.h"

namespace sandbox {

TableFiller::TableFiller(Store& store, std::string const& dbKey, std::string const& table)
    : m_store(store), m_table(FindTable(store, {0, "", table, dbKey})) {
  m_root = AddRecord(store, {m_table.id, 0, m_table.name, m_table.name, true, State()});
}

int TableFiller::AddIn(std::string const& folders, std::string const& name,
                       std::string const& longName) {
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

void TableFiller::SetValue(int record, std::string const& name, std::string const& text) {
  if (text.empty() || text == "-") return;
  if (name == "subsets") return PutInto(record, Split(text, ','));
  auto const [entry, isNew] = m_attributes.try_emplace(name);
  if (isNew) {
    auto const found =
        Attributes(m_store, "a.table_id = ? AND a.name = ?", {std::to_string(m_table.id), name});
    if (found.empty()) throw std::runtime_error("no attribute " + name + " in " + m_table.name);
    entry->second = found[0];
  }
  StoreValue(m_store, record, entry->second.id,
             BuildValue(m_store, entry->second, m_table.dbKey, text));
}

void TableFiller::AddLines(char const* data, Content content) {
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

int TableFiller::Named(std::string const& name) {
  auto const found = m_records.find(name);
  return found != m_records.end() ? found->second : AddIn("", name, name);
}

int TableFiller::Known(std::string const& name) const {
  auto const found = m_records.find(name);
  if (found == m_records.end()) throw std::runtime_error(m_table.name + " lack " + name);
  return found->second;
}

void TableFiller::PutInto(int record, std::vector<std::string> const& subsets) {
  for (std::string const& name : subsets) {
    std::string const subset = m_store
                                   .Only("SELECT id FROM subset WHERE table_id = ? AND name = ?",
                                         {std::to_string(m_table.id), name})
                                   .Text(0);
    m_store.Insert("INSERT OR IGNORE INTO record_subset VALUES (?, ?)",
                   {std::to_string(record), subset});
  }
}

std::string TableFiller::State() const {
  return m_table.dbKey == "ELEMENTS" ? "Unversioned" : "Released";
}

}  // namespace sandbox
