#pragma once

#include <vector>

#include "lumo/types/NamedAttribute.h"
#include "lumo/xml/FromXml.h"

/// An attribute and those that describe it.
class LUMO_API AttributeMetaAttributes : public lumo::FromXml<AttributeMetaAttributes> {
 public:
  AttributeMetaAttributes() = default;
  explicit AttributeMetaAttributes(XmlNode<char> const* node);

  /// Null when the reply named none.
  SmartPtr<NamedAttribute> GetParentAttribute() const { return m_parentAttribute; }
  void SetParentAttribute(SmartPtr<NamedAttribute> const& parentAttribute) {
    m_parentAttribute = parentAttribute;
  }
  std::vector<SmartPtr<NamedAttribute>>& AccessMetaAttributes() { return m_metaAttributes; }
  std::vector<SmartPtr<NamedAttribute>> const& AccessMetaAttributes() const {
    return m_metaAttributes;
  }
  void AddMetaAttribute(SmartPtr<NamedAttribute> const& attribute) {
    m_metaAttributes.push_back(attribute);
  }

 private:
  SmartPtr<NamedAttribute> m_parentAttribute;
  std::vector<SmartPtr<NamedAttribute>> m_metaAttributes;
};
