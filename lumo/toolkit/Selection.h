#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "lumo/toolkit/Condition.h"
#include "lumo/toolkit/Partition.h"
#include "lumo/toolkit/Records.h"

namespace lumo {

class Connection;
struct SelectionParts;

/// Some records of a table. Nothing is sent before they are read. Each of the functions that narrow
/// it gives a selection of its own:
///
///     auto const light = table.Where("density < 3000 kg/m^3").Below("Metals and alloys");
class LUMO_API Selection {
 public:
  /// Those that fulfil the condition, see `Condition`, and all conditions before.
  Selection Where(std::string const& condition, Match match = Match::Overlap) const;
  /// Those that a text search finds.
  Selection Text(std::string const& words) const;
  /// Those with just that short or full name, namesakes too.
  Selection Called(std::string const& name) const;
  /// Those in that folder and in the folders below, by its path, "Metals/Steels".
  Selection Below(std::string const& folder) const;
  /// Those in that subset.
  Selection In(std::string const& subset) const;
  /// Just these, in their order; what was asked for before is of no matter.
  Selection Named(std::vector<std::string> const& namesOrIds) const;
  /// The same by what the server knows them by.
  Selection WithIds(std::vector<RecordId> const& ids) const;

  /// Names and places of the records, without values. Throws `Error`.
  std::vector<RecordHead> Heads(ReadOptions const& options = {}) const;
  /// The same in chunks, as they come, with the connection over which more may be asked; for the
  /// project's other parts.
  void ReadHeads(
      ReadOptions const& options,
      std::function<void(Connection&, std::vector<RecordHead> const&)> const& take) const;
  /// Throws `Error`.
  std::vector<RecordId> Ids(ReadOptions const& options = {}) const;
  /// The records in parts of so many, to be read by other processes or machines; see `Partition`.
  std::vector<Partition> Partitions(std::size_t recordsEach,
                                    std::vector<std::string> const& attributes,
                                    ReadOptions const& options = {}) const;
  /// Reads what these attributes hold, or all attributes when none is named.
  RecordStream Read(std::vector<std::string> const& attributes = {},
                    ReadOptions const& options = {}) const;

 private:
  friend class Client;
  friend class Table;
  explicit Selection(std::shared_ptr<SelectionParts const> parts);
  template <class Change>
  Selection Changed(Change change) const;

  std::shared_ptr<SelectionParts const> m_parts;
};

}  // namespace lumo
