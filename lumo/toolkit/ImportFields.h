#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "lumo/toolkit/Import.h"
#include "lumo/toolkit/OpenedTable.h"
#include "lumo/toolkit/RecordHead.h"
#include "lumo/toolkit/Relations.h"

namespace lumo {

/// What an import writes of records: the values of attributes, their links and their subsets. The
/// links of a group, and the subsets, are attributes as well here, so that all that is kept,
/// compared and undone is a value: `LinkedRecords` of one group, in the order of the identities, or
/// words; nothing for none. Not installed.
class ImportFields {
 public:
  explicit ImportFields(std::shared_ptr<OpenedTable> table) : m_table(std::move(table)) {}

  enum class Kind { Values, Links, Subsets };
  /// Of a name that the journal keeps.
  static Kind KindOf(std::string const& name);
  static bool IsLinks(std::string const& name) { return KindOf(name) == Kind::Links; }
  /// For people: "links: Producers", "subsets", or the attribute.
  static std::string ShownName(std::string const& name);

  /// By the name that the journal keeps; throws `Error` (NotFound).
  Attribute const& Find(std::string const& name);
  /// By the names that people write; throw `Error` (NotFound).
  Attribute const& FindLinks(std::string const& group);
  Attribute const& Subsets();
  /// Why the value cannot be written; empty when it can.
  std::string const& FaultOf(Attribute const& field);

  /// Asks for the records to which the rows are to be linked, each once, over several connections.
  void LookUp(std::vector<ImportRow> const& rows, CancellationToken const& cancel);
  /// Of records that were looked up. Throws `Error`: NotFound, Ambiguous.
  Value LinksTo(Attribute const& links, std::vector<std::string> const& records) const;
  /// Throws `Error` (NotFound) for a subset that there is not.
  Value InSubsets(std::vector<std::string> const& subsets);

  /// Reads what records have now, and hands over each value with the place of its record in the
  /// list.
  void ReadPresent(std::vector<RecordHead> const& records, std::set<Attribute const*> const& fields,
                   CancellationToken const& cancel,
                   std::function<void(std::size_t, Attribute const&, Value const&)> const& take);
  /// For people, with the paths of linked records.
  std::string TextOf(Value const& value, Attribute const& field);
  /// Says that a value's text will be wanted, so that names are asked for together.
  void NoteValue(Value const& value);

  /// Links each record to just those of its value, by the fewest changes; all or nothing.
  void WriteLinks(Connection& connection, Attribute const& links,
                  std::vector<std::pair<RecordId, Value>> const& records);

 private:
  struct LinkField {
    LinkGroup group = {};
    Attribute attribute = {};
  };
  using Target = std::variant<RecordHead, Error>;

  std::vector<LinkField> const& LinkFields();
  LinkField const& FieldOf(Attribute const& links);
  /// Of one group, by the records' identities.
  std::map<int, Value> Linked(Connection& connection, LinkField const& field,
                              std::vector<RecordHead> const& records);
  void LoadPaths();

  std::shared_ptr<OpenedTable> m_table;
  std::optional<std::vector<LinkField>> m_links;
  std::optional<Attribute> m_subsets;
  std::map<std::pair<std::string, std::string>, Target> m_targets;  ///< by group and what was typed
  std::map<int, std::string> m_paths;
  std::map<int, RecordId> m_unknownPaths;
};

}  // namespace lumo
