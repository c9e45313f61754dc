#include "lumo/toolkit/Source.h"

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <utility>

#include "lumo/toolkit/ConditionPlan.h"
#include "lumo/toolkit/Stream.h"

namespace lumo {
namespace {

/// Whether a folder is that one or lies in it.
bool IsBelow(std::string const& folder, std::string const& top) {
  return top.empty() || folder == top || folder.compare(0, top.size() + 1, top + "/") == 0;
}

void KeepThoseIn(std::vector<RecordHead>& heads, std::vector<RecordHead> const& others) {
  std::unordered_set<int> identities;
  for (RecordHead const& other : others) identities.insert(other.id.identity);
  heads.erase(
      std::remove_if(heads.begin(), heads.end(),
                     [&](RecordHead const& head) { return !identities.count(head.id.identity); }),
      heads.end());
}

}  // namespace

void ReadValues(Connection& connection, std::shared_ptr<OpenedTable> const& table,
                std::vector<RecordHead> const& records, std::vector<std::string> const& attributes,
                ReadOptions const& readOptions,
                std::function<void(std::size_t, std::vector<Value> const&)> const& take) {
  auto const plan = std::make_shared<ReadPlan const>(connection, table, attributes, readOptions);
  auto const size = std::make_shared<ChunkSize>(0, attributes.size(), readOptions.withFiles);
  CallScope const scope = connection.Scope();
  PipelineOptions options;
  options.cancel = scope.cancel;
  options.deadline = scope.deadline;
  options.onCall = scope.onCall;
  std::size_t next = 0;
  RecordPipeline pipeline(
      [&](Connection& /*worker*/) -> std::optional<std::vector<RecordHead>> {
        auto const begin = records.begin() + static_cast<std::ptrdiff_t>(next);
        next = std::min(records.size(), next + size->Get());
        auto const end = records.begin() + static_cast<std::ptrdiff_t>(next);
        if (begin == end) return std::nullopt;
        return std::vector<RecordHead>(begin, end);
      },
      [reader = Reader(plan, size)](Connection& worker, std::vector<RecordHead>&& heads) {
        return reader.Read(worker, std::move(heads));
      },
      options);
  pipeline.Start(table->pool->LendAll());
  std::size_t done = 0;
  while (auto const chunk = pipeline.Take([&] { scope.ThrowWhenOver(); })) {
    for (Record const& record : *chunk) take(done++, record.Values());
  }
}

RecordSource::RecordSource(std::shared_ptr<SelectionParts const> what,
                           std::function<std::size_t()> size)
    : m_what(std::move(what)), m_size(std::move(size)) {}

RecordSource::~RecordSource() = default;

Condition RecordSource::ConditionOf(Connection& connection) const {
  TableInfo const& table = m_what->table->info;
  std::optional<Condition> all;
  for (auto const& [text, match] : m_what->conditions) {
    Condition const one(text, table.Attributes(connection), table.KnownUnits(connection), match);
    all = all ? Condition::Both(*all, one) : one;
  }
  return *all;
}

std::vector<RecordHead> RecordSource::Search(Connection& connection) const {
  TableInfo const& table = m_what->table->info;
  std::vector<RecordHead> found;
  if (!m_what->conditions.empty()) {
    auto const read = [&](auto const& records, auto const& attributes, auto const& take) {
      ReadValues(connection, m_what->table, records, attributes, ReadOptions(), take);
    };
    found = FindWhere(connection, table, ConditionOf(connection), m_what->subset, read);
  }
  bool isFirst = m_what->conditions.empty();
  auto const narrow = [&](std::vector<RecordHead> others) {
    if (std::exchange(isFirst, false)) {
      found = std::move(others);
    } else {
      KeepThoseIn(found, others);
    }
  };
  if (!m_what->text.empty()) {
    narrow(FindByText(connection, table, m_what->text, m_what->subset));
  }
  if (!m_what->name.empty()) {
    narrow(FindByName(connection, table, m_what->name, m_what->subset));
  }
  return found;
}

void RecordSource::Begin(Connection& connection) {
  TableInfo const& table = m_what->table->info;
  if (m_what->ids) {
    for (RecordId const& id : *m_what->ids) {
      m_heads.push_back(id.identity != 0 ? RecordHead{id, "", "", ""}
                                         : FindRecord(connection, table, id.guid));
    }
  } else if (m_what->names) {
    for (std::string const& name : *m_what->names) {
      m_heads.push_back(FindRecord(connection, table, name));
    }
  } else if (m_what->IsSearch()) {
    if (!m_what->folder.empty()) {
      m_folder = FolderTree(table).Find(connection, m_what->folder).path;
    }
    m_heads = Search(connection);
  } else {
    m_walk.emplace(connection, table, m_what->folder, m_what->subset);
  }
  if (m_folder.empty()) m_total = m_heads.size();
}

std::vector<RecordHead> RecordSource::NextOfTree(Connection& connection) {
  std::vector<RecordHead> chunk;
  TreeWalk::Step step;
  std::size_t const size = m_size();
  while (chunk.size() < size && m_walk->Next(connection, step, std::numeric_limits<int>::max())) {
    if (!step.isFolder) chunk.push_back(std::move(step.record));
  }
  return chunk;
}

std::vector<RecordHead> RecordSource::NextOfList(Connection& connection) {
  std::vector<RecordHead> chunk;
  while (chunk.empty() && m_next < m_heads.size()) {
    std::size_t const end = std::min(m_heads.size(), m_next + m_size());
    std::move(m_heads.begin() + static_cast<std::ptrdiff_t>(m_next),
              m_heads.begin() + static_cast<std::ptrdiff_t>(end), std::back_inserter(chunk));
    m_next = end;
    m_folders.Fill(connection, chunk);
    chunk.erase(
        std::remove_if(chunk.begin(), chunk.end(),
                       [&](RecordHead const& head) { return !IsBelow(head.folder, m_folder); }),
        chunk.end());
  }
  return chunk;
}

std::optional<std::vector<RecordHead>> RecordSource::Next(Connection& connection) {
  if (!std::exchange(m_hasBegun, true)) Begin(connection);
  std::vector<RecordHead> chunk = m_walk ? NextOfTree(connection) : NextOfList(connection);
  if (chunk.empty()) return std::nullopt;
  return chunk;
}

}  // namespace lumo
