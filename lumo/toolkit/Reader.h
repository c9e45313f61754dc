#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "lumo/toolkit/OpenedTable.h"
#include "lumo/toolkit/Records.h"
#include "lumo/toolkit/Tree.h"

namespace lumo {

/// How many records the next call asks for: as many as make a reply of a good size in a good time.
/// Used by all workers at once.
class LUMO_API ChunkSize {
 public:
  /// `fixed` is 0 for a size that adapts; it begins by the number of attributes.
  ChunkSize(std::size_t fixed, std::size_t attributes, bool withFiles);

  std::size_t Get() const { return m_size.load(std::memory_order_relaxed); }
  /// A call for so many records was answered.
  void NoteAnswer(std::size_t records, std::size_t bytes, std::chrono::steady_clock::duration time);
  /// A call for so many records took too long, or was too large.
  void NoteFailure(std::size_t records);

 private:
  bool m_isFixed;
  std::atomic<std::size_t> m_size;
};

/// What is read of the records of a table, and where it stands in them. Shared by all workers and
/// by the records.
class ReadPlan {
 public:
  /// Finds the attributes; all of the table's when none is named.
  ReadPlan(Connection& connection, std::shared_ptr<OpenedTable> table,
           std::vector<std::string> const& attributes, ReadOptions const& options);

  std::vector<Attribute> const& Attributes() const { return m_attributes; }
  /// The attributes with the units of the system that is wanted.
  std::vector<Attribute> const& Shown() const { return m_shown; }
  /// Where the values of the attribute stand; throws `Error` (InvalidArgument).
  std::size_t PlaceOf(std::string_view attribute) const;
  /// The same for an attribute as the server names it; nothing for one that was not asked for.
  std::optional<std::size_t> FindPlace(std::string const& attribute) const;
  /// The value in the units of the system that is wanted.
  Value Convert(Value value) const;
  Units const& KnownUnits() const;
  SmartPtr<GetRecordAttributesByRefRequest> RequestFor(std::vector<RecordHead> const& heads) const;

 private:
  std::shared_ptr<OpenedTable> m_table;
  std::vector<Attribute> m_attributes;
  std::vector<Attribute> m_shown;
  std::vector<SmartPtr<AttributeReference>> m_references;
  std::unordered_map<std::string, std::size_t> m_places;
  UnitSystem m_system;
  bool m_hasSystem;
  ConvertedDigits m_digits;
  bool m_withFiles;
  bool m_withGuids;
};

struct Record::Data {
  RecordHead head;
  std::vector<Value> values;
  std::shared_ptr<ReadPlan const> plan;
};

/// Reads chunks of records.
class Reader {
 public:
  Reader(std::shared_ptr<ReadPlan const> plan, std::shared_ptr<ChunkSize> size)
      : m_plan(std::move(plan)), m_size(std::move(size)) {}

  /// In the order of the heads, one record for each. A chunk that takes too long or is too large is
  /// halved before it is asked for again.
  std::vector<Record> Read(Connection& connection, std::vector<RecordHead> heads) const;

 private:
  void ReadInto(std::vector<Record>& records, Connection& connection,
                std::vector<RecordHead> heads) const;
  void Convert(std::vector<Record>& records, std::vector<RecordHead> heads,
               GetRecordAttributesByRefResponse const& found) const;
  std::vector<Value> ValuesOf(RecordData const& data) const;

  std::shared_ptr<ReadPlan const> m_plan;
  std::shared_ptr<ChunkSize> m_size;
};

}  // namespace lumo
