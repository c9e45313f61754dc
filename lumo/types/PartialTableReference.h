#pragma once

#include <string>

#include "lumo/xml/FromXml.h"

/// A table without its database. Every identifier that is set is sent; the server decides which
/// one it follows. The declared type is the type on the wire: a `TableReference` held by a
/// `SmartPtr<PartialTableReference>` is written without its database.
class LUMO_API PartialTableReference : public lumo::FromXml<PartialTableReference> {
 public:
  PartialTableReference() = default;
  explicit PartialTableReference(XmlNode<char> const* node);
  /// A reference by identity, GUID or name; the others are not set:
  static SmartPtr<PartialTableReference> CreateOneFromTableID(int tableID);
  static SmartPtr<PartialTableReference> CreateOneFromTableGUID(std::string const& tableGUID);
  static SmartPtr<PartialTableReference> CreateOneFromTableName(std::string const& tableName);

  /// Identity of the table; 0 means not set.
  int GetTableID() const { return m_tableID; }
  void SetTableID(int tableID) { m_tableID = tableID; }
  /// GUID of the table; empty means not set.
  std::string const& GetTableGUID() const { return m_tableGUID; }
  void SetTableGUID(std::string const& tableGUID) { m_tableGUID = tableGUID; }
  /// Name of the table; empty means not set.
  std::string const& GetTableName() const { return m_tableName; }
  void SetTableName(std::string const& tableName) { m_tableName = tableName; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  int m_tableID = 0;
  std::string m_tableGUID;
  std::string m_tableName;
};
