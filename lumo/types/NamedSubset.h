#pragma once

#include <string>

#include "lumo/types/SubsetReference.h"

/// A subset with its name.
class LUMO_API NamedSubset : public lumo::FromXml<NamedSubset> {
 public:
  NamedSubset() = default;
  explicit NamedSubset(XmlNode<char> const* node);

  /// Null when none is known. Its key and table are sent; its identity and its own name are not.
  SmartPtr<SubsetReference> GetSubset() const { return m_subset; }
  void SetSubset(SmartPtr<SubsetReference> const& subset) { m_subset = subset; }
  /// Name of the subset.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  SmartPtr<SubsetReference> m_subset;
  std::string m_name;
};
