#pragma once

#include "lumo/platform/core/Counted.h"
#include "lumo/types/AttributeReference.h"
#include "lumo/values/IDataValue.h"

/// An attribute and the value that a record shall have for it.
class LUMO_API ImportAttributeValue : public lumo::Counted<ImportAttributeValue> {
 public:
  ImportAttributeValue() = default;
  ImportAttributeValue(SmartPtr<IDataValue> const& value,
                       SmartPtr<AttributeReference> const& attribute)
      : m_attributeReference(attribute), m_dataValue(value) {}

  /// Not sent when null.
  SmartPtr<AttributeReference> GetAttributeReference() const { return m_attributeReference; }
  void SetAttributeReference(SmartPtr<AttributeReference> const& attributeReference) {
    m_attributeReference = attributeReference;
  }
  /// Not sent when null.
  SmartPtr<IDataValue> GetDataValue() const { return m_dataValue; }
  void SetDataValue(SmartPtr<IDataValue> const& dataValue) { m_dataValue = dataValue; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  SmartPtr<AttributeReference> m_attributeReference;
  SmartPtr<IDataValue> m_dataValue;
};
