#pragma once

#include <string>

#include "lumo/types/LumoEntityReference.h"
#include "lumo/types/PartialTableReference.h"

/// What the references that go by identity or by table and name have in common: the latter two.
class LUMO_API TableQualifiedReference : public LumoEntityReference {
 public:
  TableQualifiedReference() = default;
  /// Reads the key; the derived class knows where the rest stands.
  explicit TableQualifiedReference(XmlNode<char> const* node) : LumoEntityReference(node) {}

  /// Name of the entity in its table.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }
  /// The table that qualifies the name; null when there is none.
  SmartPtr<PartialTableReference> GetPartialTableReference() const {
    return m_partialTableReference;
  }
  void SetPartialTableReference(SmartPtr<PartialTableReference> const& table) {
    m_partialTableReference = table;
  }

 protected:
  SmartPtr<PartialTableReference> m_partialTableReference;
  std::string m_name;
};
