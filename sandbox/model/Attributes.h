#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sandbox/model/Tables.h"

namespace sandbox {

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

/// Rows by a condition on the columns of attribute a and database d.
std::vector<Attribute> Attributes(Store& store, std::string const& condition,
                                  std::vector<std::string> const& values);
AttributeName ReadAttributeName(Store& store, pugi::xml_node node);
Attribute ReadAttribute(Store& store, pugi::xml_node node);
/// The attributes of `<zbt:attributeReferences>`.
std::vector<Attribute> ReadAttributes(Store& store, pugi::xml_node list);
/// What the name means in a table; nothing when the table has no such attribute.
std::optional<Attribute> AttributeIn(Store& store, AttributeName const& name, int tableId);

/// Append the children by which a reply names an attribute.
void WriteAttribute(Store& store, pugi::xml_node node, Attribute const& attribute);
/// Reference, name and what a meta-attribute is about.
void WriteNamedAttribute(Store& store, pugi::xml_node node, Attribute const& attribute);

}  // namespace sandbox
