#include "lumo/services/dataexport/RecordData.h"

#include <utility>

#include "lumo/xml/NodeReader.h"

RecordData::RecordData(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  if (!in.Child("record", m_recordReference)) m_recordReference = RecordReference::CreateOne();
  in.In("attributeValues").ForEach("attributeValue", [this](XmlNode<char> const& value) {
    ReadValue(value);
  });
}

void RecordData::ReadValue(XmlNode<char> const& node) {
  if (XMLUtilites::GetNode("AttributeName", &node) == nullptr) return;
  SmartPtr<AttributeValue> value = AttributeValue::CreateOne(&node);
  if (!value->IsSupported()) return;
  int index = 0;
  if (AttributeReference::IsPseudoAttributeName(value->GetAttributeName(), &index)) {
    m_pseudoAttributes[static_cast<std::size_t>(index)] = value;
  }
  if (m_attributeValues.empty()) m_attributeValues.reserve(8);  // few records have less
  m_attributeValues.push_back(std::move(value));
}

SmartPtr<AttributeValue> RecordData::AccessPseudoAttribute(PseudoAttribute attribute) const {
  auto const index = static_cast<std::size_t>(attribute);
  return index < kPseudoAttributes ? m_pseudoAttributes[index] : nullptr;
}
