#pragma once

#include "lumo/types/TableQualifiedReference.h"

/// A subset of a table, by identity or by table and name. A subset with an identity is sent
/// without its name.
class LUMO_API SubsetReference : public lumo::FromXml<SubsetReference, TableQualifiedReference> {
 public:
  SubsetReference() = default;
  explicit SubsetReference(XmlNode<char> const* node);

  /// Identity of the subset; 0 means not set.
  int GetSubsetIdentity() const { return m_subsetIdentity; }
  void SetSubsetIdentity(int subsetIdentity) { m_subsetIdentity = subsetIdentity; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  int m_subsetIdentity = 0;
};
