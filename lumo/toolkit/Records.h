#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/toolkit/Columns.h"
#include "lumo/toolkit/Options.h"
#include "lumo/toolkit/RecordHead.h"

namespace lumo {

class ReadPlan;

/// A record with the values that were read. Cheap to copy, and safe to use from several threads.
class LUMO_API Record {
 public:
  Record();

  /// Names and place of the record, and what the server knows it by:
  RecordHead const& Head() const;
  RecordId const& Id() const { return Head().id; }
  std::string const& Name() const { return Head().name; }
  std::string const& FullName() const { return Head().fullName; }
  std::string const& Folder() const { return Head().folder; }

  /// What the attribute holds, `std::monostate` when the record has no value. Names are taken as
  /// they were given to the read, in another case too. Throws `Error` (InvalidArgument) for an
  /// attribute that was not read.
  Value const& operator[](std::string_view attribute) const;
  /// The figure in that unit, the middle of a range; nothing when there is none. Only the server's
  /// own factors convert, which are asked for once. Throws `Error` (InvalidArgument) when the
  /// units do not fit each other.
  std::optional<double> Number(std::string_view attribute, std::string const& unit) const;

  /// The attributes that were read, in the order of the read, with the units of their figures.
  std::vector<Attribute> const& Attributes() const;
  /// What they hold, in that order.
  std::vector<Value> const& Values() const;

 private:
  friend class Reader;
  struct Data;
  explicit Record(std::shared_ptr<Data const> data);

  std::shared_ptr<Data const> m_data;
};

/// Records as they are read, once, in the order of the selection unless the options say otherwise:
///
///     for (lumo::Record const& record : selection.Read({"Density"})) Use(record);
///
/// Nothing is sent before `begin` or `NextChunk`. From then on some threads read ahead, a few calls
/// each; the end of the object gives up what is under way, and takes less than a second. Not to be
/// used by several threads at once.
class LUMO_API RecordStream {
 public:
  /// Goes from record to record, once.
  class LUMO_API iterator {
   public:
    /// What an input iterator says of itself:
    using iterator_category = std::input_iterator_tag;
    using value_type = Record;
    using difference_type = std::ptrdiff_t;
    using pointer = Record const*;
    using reference = Record const&;

    /// The record at hand, until the iterator moves on:
    Record const& operator*() const;
    Record const* operator->() const { return &**this; }
    /// Throws `Error` when the read fails; what was read before stays read.
    iterator& operator++();
    /// Equal only at the end of the stream, or for the same stream:
    bool operator==(iterator const& other) const { return m_stream == other.m_stream; }
    bool operator!=(iterator const& other) const { return m_stream != other.m_stream; }

   private:
    friend class RecordStream;
    explicit iterator(RecordStream* stream) : m_stream(stream) {}
    void SkipEnd();

    RecordStream* m_stream;
  };

  RecordStream(RecordStream&& other) noexcept;
  RecordStream& operator=(RecordStream&& other) noexcept;
  ~RecordStream();

  /// At the record behind those that were taken. Throws `Error`.
  iterator begin();
  /// Behind the last record.
  iterator end() { return iterator(nullptr); }
  /// The next records, as many as one call brought; false at the end. Throws `Error`.
  bool NextChunk(std::vector<Record>& chunk);

  /// The same as columns in the wide form; null at the end. Throws `Error`.
  std::shared_ptr<Columns const> NextColumns();
  /// Hands the rest of the stream to another library as an Arrow stream of such columns, which
  /// belongs to it from then on. Throws `Error`.
  void ExportArrow(ArrowArrayStream* out) &&;

  /// The attributes that are read, in their order, with the units of their figures; asks the server
  /// for them. Throws `Error`.
  std::vector<Attribute> const& Attributes();
  /// How far the read has come.
  lumo::Progress Progress() const;

 private:
  friend class Selection;
  struct Parts;
  explicit RecordStream(std::unique_ptr<Parts> parts);

  std::unique_ptr<Parts> m_parts;
};

}  // namespace lumo
