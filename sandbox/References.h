#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Checker.h"
#include "Store.h"

namespace sandbox {

/// A table as a request names it.
struct TableName {
  int identity = 0;
  std::string guid;
  std::string name;
  std::string dbKey;
  bool IsEmpty() const { return identity == 0 && guid.empty() && name.empty(); }
};

struct Subset {
  int id = 0;
  std::string name;
  int tableId = 0;
};

/// One version of a record; records are addressed by their history, which is the same for all
/// versions.
struct Record {
  int id = 0;
  int historyId = 0;
  int tableId = 0;
  int parentId = 0;  ///< row of the current version of the parent; 0 at the top
  int version = 0;
  std::string guid;
  std::string historyGuid;
  std::string shortName;
  std::string longName;
  std::string state;
  std::string color;
  std::string dbKey;
  bool isFolder = false;
};

struct Attribute {
  int id = 0;
  int tableId = 0;
  int aboutId = 0;  ///< the attribute that a meta-attribute describes
  std::string name;
  std::string type;
  std::string unit;  ///< in which numbers are stored
  std::string standardName;
  bool isMultiValued = false;
  bool isGridded = false;
};

/// An attribute as a request names it: by identity, by name, by a standard name, which each table
/// may understand, or as a property of the record.
struct AttributeName {
  std::string dbKey;
  int identity = 0;
  TableName table;
  std::string name;
  bool isStandard = false;
  bool isPseudo = false;
};

struct LinkGroup {
  int id = 0;
  int fromTable = 0;
  int toTable = 0;
  std::string name;
  std::string reverseName;
  std::string kind;
  bool isReverse = false;  ///< followed from the target's side
};

struct Parameter {
  int id = 0;
  std::string name;
  std::string unit;
  std::string type;
};

/// The key of an existing database; throws `Fault` for any other, as all that follow do for what
/// does not exist.
std::string KnownKey(Store& store, pugi::xml_node node);

/// Reads the identifiers of a table up to the database key.
TableName ReadTableIdentifiers(Checker& in);
Table ReadTable(Store& store, pugi::xml_node node);
/// The table that answers to every identifier that was given.
Table FindTable(Store& store, TableName const& name);
/// The subset that a reference names; a name alone is looked for in `context`, when it is set.
Subset ReadSubset(Store& store, pugi::xml_node node, Table const* context = nullptr);
Record ReadRecord(Store& store, pugi::xml_node node);
/// The records of `<zbt:recordReferences>`.
std::vector<Record> ReadRecords(Store& store, pugi::xml_node list, char const* item = "zbt:record");
AttributeName ReadAttributeName(Store& store, pugi::xml_node node);
Attribute ReadAttribute(Store& store, pugi::xml_node node);
/// The attributes of `<zbt:attributeReferences>`.
std::vector<Attribute> ReadAttributes(Store& store, pugi::xml_node list);
/// What the name means in a table; nothing when the table has no such attribute.
std::optional<Attribute> AttributeIn(Store& store, AttributeName const& name, int tableId);
LinkGroup ReadLinkGroup(Store& store, pugi::xml_node node);
Parameter ReadParameter(Store& store, pugi::xml_node node, std::string* dbKey = nullptr);
/// The identities of the subsets to which a filter restricts; nothing for no restriction.
std::optional<std::vector<int>> ReadFilter(Store& store, pugi::xml_node node);

/// Rows by a condition on the columns of their table.
std::vector<Record> Records(Store& store, std::string const& condition,
                            std::vector<std::string> const& values);
std::vector<Attribute> Attributes(Store& store, std::string const& condition,
                                  std::vector<std::string> const& values);
std::vector<LinkGroup> LinkGroups(Store& store, std::string const& condition,
                                  std::vector<std::string> const& values);
/// Whether the record is in one of the subsets, or there is no restriction. Folders always pass.
bool Passes(Store& store, Record const& record, std::optional<std::vector<int>> const& subsets);

/// Append the children by which a reply names a thing.
void WriteTable(pugi::xml_node node, Table const& table);
void WriteOwner(pugi::xml_node name, Table const& table);
void WriteRecord(pugi::xml_node node, Record const& record, bool withGuids = false);
/// Short name, full name and reference.
void WriteNamedRecord(pugi::xml_node node, Record const& record, bool withGuids = false);
void WriteAttribute(Store& store, pugi::xml_node node, Attribute const& attribute);
/// Reference, name and what a meta-attribute is about.
void WriteNamedAttribute(Store& store, pugi::xml_node node, Attribute const& attribute);
void WriteLinkGroup(Store& store, pugi::xml_node node, LinkGroup const& group, bool isReverse);
void WriteParameter(pugi::xml_node node, Parameter const& parameter, std::string const& dbKey);
void WriteUnit(Store& store, pugi::xml_node node, std::string const& symbol);

}  // namespace sandbox
