#include "lumo/toolkit/Selection.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "lumo/toolkit/Source.h"
#include "lumo/toolkit/Stream.h"

namespace lumo {
namespace {

/// Records that are looked at at once when only their identities are wanted.
constexpr std::size_t kManyIds = 1000;

}  // namespace

Selection::Selection(std::shared_ptr<SelectionParts const> parts) : m_parts(std::move(parts)) {}

template <class Change>
Selection Selection::Changed(Change change) const {
  auto parts = std::make_shared<SelectionParts>(*m_parts);
  change(*parts);
  return Selection(std::move(parts));
}

Selection Selection::Where(std::string const& condition, Match match) const {
  return Changed([&](SelectionParts& parts) { parts.conditions.emplace_back(condition, match); });
}

Selection Selection::Text(std::string const& words) const {
  return Changed([&](SelectionParts& parts) { parts.text = words; });
}

Selection Selection::Called(std::string const& name) const {
  return Changed([&](SelectionParts& parts) { parts.name = name; });
}

Selection Selection::Below(std::string const& folder) const {
  return Changed([&](SelectionParts& parts) { parts.folder = folder; });
}

Selection Selection::In(std::string const& subset) const {
  return Changed([&](SelectionParts& parts) { parts.subset = subset; });
}

Selection Selection::Named(std::vector<std::string> const& namesOrIds) const {
  return Changed([&](SelectionParts& parts) { parts.names = namesOrIds; });
}

Selection Selection::WithIds(std::vector<RecordId> const& ids) const {
  return Changed([&](SelectionParts& parts) { parts.ids = ids; });
}

void Selection::ReadHeads(
    ReadOptions const& options,
    std::function<void(Connection&, std::vector<RecordHead> const&)> const& take) const {
  auto const connection = m_parts->table->pool->Lend();
  connection->Scope().cancel = options.cancel;
  if (options.timeLimit.count() > 0) {
    connection->Scope().deadline = std::chrono::steady_clock::now() + options.timeLimit;
  }
  RecordSource source(m_parts, [] { return kManyIds; });
  while (auto const heads = source.Next(*connection)) take(*connection, *heads);
}

std::vector<RecordHead> Selection::Heads(ReadOptions const& options) const {
  std::vector<RecordHead> all;
  ReadHeads(options, [&](Connection& /*connection*/, std::vector<RecordHead> const& heads) {
    all.insert(all.end(), heads.begin(), heads.end());
  });
  return all;
}

std::vector<RecordId> Selection::Ids(ReadOptions const& options) const {
  std::vector<RecordId> ids;
  for (RecordHead const& head : Heads(options)) ids.push_back(head.id);
  return ids;
}

std::vector<Partition> Selection::Partitions(std::size_t recordsEach,
                                             std::vector<std::string> const& attributes,
                                             ReadOptions const& options) const {
  if (recordsEach == 0) throw Error(ErrorCode::InvalidArgument, "a part needs records");
  TableInfo const& table = m_parts->table->info;
  Partition const empty{
      m_parts->table->pool->Settings().url, table.DatabaseKey(), table.Name(), attributes, {}};
  std::vector<Partition> partitions;
  for (RecordId& id : Ids(options)) {
    if (partitions.empty() || partitions.back().records.size() == recordsEach) {
      partitions.push_back(empty);
    }
    partitions.back().records.push_back(std::move(id));
  }
  return partitions;
}

RecordStream Selection::Read(std::vector<std::string> const& attributes,
                             ReadOptions const& options) const {
  return RecordStream(std::make_unique<RecordStream::Parts>(m_parts, attributes, options));
}

}  // namespace lumo
