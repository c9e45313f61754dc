#pragma once

#include <string>

#include "lumo/types/PartialTableReference.h"
#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

namespace lumo {

/// A table with its database: what `TableReference` and `LumoTableReference` have in common. The
/// database key comes last on the wire.
template <class T>
class QualifiedTable : public FromXml<T, PartialTableReference> {
 public:
  QualifiedTable() = default;
  explicit QualifiedTable(XmlNode<char> const* node) : FromXml<T, PartialTableReference>(node) {
    NodeReader(node).Child("dbKey", m_dbKey);
  }

  /// Key of the database that holds the table; sent even when empty.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }

  void CreateXMLNode(XmlNode<char>* node) const {
    PartialTableReference::CreateXMLNode(node);
    NodeWriter(node).Child("zbt:dbKey", m_dbKey);
  }

 private:
  std::string m_dbKey;
};

}  // namespace lumo
