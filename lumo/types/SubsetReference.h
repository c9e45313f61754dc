#pragma once

#include <string>

#include "lumo/types/LumoEntityReference.h"
#include "lumo/types/PartialTableReference.h"

/// A subset of a table, by identity or by table and name. A subset with an identity is sent
/// without its name.
class LUMO_API SubsetReference : public lumo::FromXml<SubsetReference, LumoEntityReference> {
 public:
  SubsetReference() = default;
  explicit SubsetReference(XmlNode<char> const* node);

  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }
  /// Identity of the subset; 0 means not set.
  int GetSubsetIdentity() const { return m_subsetIdentity; }
  void SetSubsetIdentity(int subsetIdentity) { m_subsetIdentity = subsetIdentity; }
  /// The table that qualifies the name; null when there is none.
  SmartPtr<PartialTableReference> GetPartialTableReference() const {
    return m_partialTableReference;
  }
  void SetPartialTableReference(SmartPtr<PartialTableReference> const& table) {
    m_partialTableReference = table;
  }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  int m_subsetIdentity = 0;
  SmartPtr<PartialTableReference> m_partialTableReference;
  std::string m_name;
};
