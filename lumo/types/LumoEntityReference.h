#pragma once

#include <string>

#include "lumo/xml/FromXml.h"

/// What all references to things inside a database share: the database's key.
class LUMO_API LumoEntityReference : public lumo::FromXml<LumoEntityReference> {
 public:
  LumoEntityReference() = default;
  explicit LumoEntityReference(XmlNode<char> const* node);

  /// Key of the database that holds the entity; sent even when empty.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::string m_dbKey;
};
