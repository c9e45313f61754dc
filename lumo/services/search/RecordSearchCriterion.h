#pragma once

#include "lumo/platform/core/Counted.h"
#include "lumo/services/search/SearchValue.h"
#include "lumo/types/AttributeReference.h"

/// One condition of a criteria search: an attribute and what its value must be.
class LUMO_API RecordSearchCriterion : public lumo::Counted<RecordSearchCriterion> {
 public:
  /// Not sent when null.
  SmartPtr<AttributeReference> GetSearchAttribute() const { return m_searchAttribute; }
  void SetSearchAttribute(SmartPtr<AttributeReference> const& searchAttribute) {
    m_searchAttribute = searchAttribute;
  }
  /// Not sent when null.
  SmartPtr<SearchValue> GetSearchValue() const { return m_searchValue; }
  void SetSearchValue(SmartPtr<SearchValue> const& searchValue) { m_searchValue = searchValue; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  SmartPtr<AttributeReference> m_searchAttribute;
  SmartPtr<SearchValue> m_searchValue;
};
