#pragma once

#include <vector>

#include "lumo/types/AttributeReference.h"
#include "lumo/types/TableFilters.h"
#include "lumo/types/TableReference.h"

/// A table with its attributes, as `GetTables` lists it.
class LUMO_API TableDetail : public lumo::FromXml<TableDetail> {
 public:
  TableDetail() = default;
  explicit TableDetail(XmlNode<char> const* node);

  /// Null when the reply named no table; not sent then.
  SmartPtr<TableReference> GetTableReference() const { return m_tableReference; }
  void SetTableReference(SmartPtr<TableReference> const& table) { m_tableReference = table; }
  std::vector<SmartPtr<AttributeReference>>& AccessAttributeReferences() {
    return m_attributeReferences;
  }
  std::vector<SmartPtr<AttributeReference>> const& AccessAttributeReferences() const {
    return m_attributeReferences;
  }
  void AddAttributeReferences(SmartPtr<AttributeReference> const& attribute) {
    m_attributeReferences.push_back(attribute);
  }
  /// The standard names that the table's attributes answer to. Not sent.
  std::vector<SmartPtr<AttributeReference>>& AccessStandardAttributeReferences() {
    return m_standardAttributeReferences;
  }
  std::vector<SmartPtr<AttributeReference>> const& AccessStandardAttributeReferences() const {
    return m_standardAttributeReferences;
  }
  void AddStandardAttributeReference(SmartPtr<AttributeReference> const& attribute) {
    m_standardAttributeReferences.push_back(attribute);
  }
  /// The classes to which the table belongs; an unknown word reads as `NoFilter`. Not sent.
  std::vector<TableFilters::eTablesFilter>& AccessTableFilters() { return m_tableFilters; }
  std::vector<TableFilters::eTablesFilter> const& AccessTableFilters() const {
    return m_tableFilters;
  }
  void AddTableFilter(TableFilters::eTablesFilter filter) { m_tableFilters.push_back(filter); }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  SmartPtr<TableReference> m_tableReference;
  std::vector<SmartPtr<AttributeReference>> m_attributeReferences;
  std::vector<SmartPtr<AttributeReference>> m_standardAttributeReferences;
  std::vector<TableFilters::eTablesFilter> m_tableFilters;
};
