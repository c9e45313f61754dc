#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "lumo/platform/core/LazyPart.h"
#include "lumo/platform/core/OptionalPart.h"
#include "lumo/types/AttributeReference.h"
#include "lumo/types/RecordReference.h"
#include "lumo/values/AttributeValue.h"
#include "lumo/xml/FromXml.h"

/// A record and its values.
class LUMO_API RecordData : public lumo::FromXml<RecordData> {
 public:
  /// The properties of a record that are read like attributes.
  using PseudoAttribute = AttributeReference::PseudoAttrs::eLumoPseudoAttributeReference;

  RecordData() = default;
  explicit RecordData(XmlNode<char> const* node);

  /// Empty, but not null, when the reply named none.
  SmartPtr<RecordReference> GetRecordReference() const { return m_recordReference.Get(); }
  void SetRecordReference(SmartPtr<RecordReference> const& recordReference) {
    m_recordReference = recordReference;
  }
  /// The values, those of pseudo-attributes among them. Values of an unknown type are left out.
  std::vector<SmartPtr<AttributeValue>>& AccessAttributeValues() { return m_attributeValues; }
  std::vector<SmartPtr<AttributeValue>> const& AccessAttributeValues() const {
    return m_attributeValues;
  }
  void AddAttributeValue(SmartPtr<AttributeValue> const& value) {
    m_attributeValues.push_back(value);
  }
  /// The value of a property of the record itself; null when the reply held none, and for the last
  /// property, which has no name of its own in replies.
  SmartPtr<AttributeValue> AccessPseudoAttribute(PseudoAttribute attribute) const;

 private:
  void ReadValue(XmlNode<char> const& node);

  static constexpr std::size_t kPseudoAttributes = 20;
  lumo::LazyPart<RecordReference> m_recordReference;
  std::vector<SmartPtr<AttributeValue>> m_attributeValues;
  lumo::OptionalPart<std::array<SmartPtr<AttributeValue>, kPseudoAttributes>> m_pseudoAttributes;
};
