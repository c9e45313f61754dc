#include "cli/Select.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "cli/Text.h"

namespace cli {
namespace {

std::vector<Entry> FindByText(Connection& connection, TableOf const& table, Selection const& what) {
  auto const request = SimpleTextSearch::CreateOne();
  request->SetDBKey(table.Key());
  request->SetSearchValue(what.text);
  request->AddRestrictToTables(table.Partial());
  request->SetRecordFilter(FilterOf(table, what.subset));
  return EntriesOf(*connection.Ask<SimpleTextSearchResponse>(
      [&](auto* into) { connection.Search()->GetSimpleTextSearchImpl()->Search(request, into); }));
}

std::vector<Entry> FindByConditions(Connection& connection, TableOf& table, Selection const& what) {
  auto const request = CriteriaSearch::CreateOne();
  request->SetDBKey(table.Key());
  for (std::string const& condition : what.conditions) {
    request->AddSearchCriterion(CriterionOf(table, condition));
  }
  request->SetRecordFilter(FilterOf(table, what.subset));
  return EntriesOf(*connection.Ask<SimpleTextSearchResponse>(
      [&](auto* into) { connection.Search()->GetCriteriaSearchImpl()->Search(request, into); }));
}

}  // namespace

SmartPtr<UnitConversionContext> UnitsOf(std::string const& unitSystem,
                                        std::string const& currency) {
  if (unitSystem.empty() && currency.empty()) return nullptr;
  auto units = UnitConversionContext::CreateOne();
  units->SetUnitSystem(unitSystem);
  units->SetCurrency(currency);
  return units;
}

std::vector<Entry> SearchTable(Connection& connection, TableOf& table, Selection const& what) {
  if (what.conditions.empty()) return FindByText(connection, table, what);
  std::vector<Entry> found = FindByConditions(connection, table, what);
  if (what.text.empty()) return found;
  std::vector<Entry> const withText = FindByText(connection, table, what);
  auto const lacksText = [&withText](Entry const& entry) {
    return std::none_of(withText.begin(), withText.end(), [&entry](Entry const& other) {
      return other.record->GetIdentity() == entry.record->GetIdentity();
    });
  };
  found.erase(std::remove_if(found.begin(), found.end(), lacksText), found.end());
  return found;
}

RecordSource::RecordSource(Connection& connection, TableOf& table, Selection const& what, int chunk)
    : m_chunk(static_cast<std::size_t>(chunk)), m_folders(connection) {
  bool const isSearch = !what.text.empty() || !what.conditions.empty();
  for (std::string const& name : what.records) {
    m_entries.push_back(FindRecord(connection, table, name));
  }
  if (isSearch) {
    m_entries = SearchTable(connection, table, what);
    if (!what.folder.empty()) KeepBelow(FindFolder(connection, table, what.folder).path);
  }
  if (!isSearch && what.records.empty()) {
    m_walk.emplace(connection, table, what.folder, what.subset);
  }
}

void RecordSource::KeepBelow(std::string const& folder) {
  m_folders.Fill(m_entries);
  auto const isElsewhere = [&folder](Entry const& entry) {
    return entry.folder != folder && entry.folder.compare(0, folder.size() + 1, folder + "/") != 0;
  };
  m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(), isElsewhere), m_entries.end());
}

std::vector<Entry> RecordSource::NextOfTree() {
  std::vector<Entry> chunk;
  TreeWalk::Step step;
  while (chunk.size() < m_chunk && m_walk->Next(step, std::numeric_limits<int>::max())) {
    if (!step.isFolder) chunk.push_back(std::move(step.entry));
  }
  return chunk;
}

std::optional<std::vector<Entry>> RecordSource::Next() {
  if (m_walk) {
    std::vector<Entry> chunk = NextOfTree();
    return chunk.empty() ? std::nullopt : std::optional(std::move(chunk));
  }
  if (m_next == m_entries.size()) return std::nullopt;
  std::size_t const end = std::min(m_next + m_chunk, m_entries.size());
  auto const at = [this](std::size_t i) {
    return m_entries.begin() + static_cast<std::ptrdiff_t>(i);
  };
  std::vector<Entry> chunk(at(m_next), at(end));
  m_next = end;
  m_folders.Fill(chunk);
  return chunk;
}

}  // namespace cli
