#include "lumo/services/dataexport/RecordData.h"

#include <utility>

#include "lumo/xml/NodeReader.h"

RecordData::RecordData(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("record", m_recordReference);
  lumo::NodeReader const values = in.In("attributeValues");
  std::size_t count = 0;
  values.ForEachChild([&count](XmlNode<char> const& /*value*/) { ++count; });
  m_attributeValues.reserve(count);
  values.ForEach("attributeValue", [this](XmlNode<char> const& value) { ReadValue(value); });
}

void RecordData::ReadValue(XmlNode<char> const& node) {
  SmartPtr<AttributeValue> value = AttributeValue::CreateOneOfRecord(node);
  if (!value) return;
  int index = 0;
  if (AttributeReference::IsPseudoAttributeName(value->GetAttributeName(), &index)) {
    m_pseudoAttributes.Make()[static_cast<std::size_t>(index)] = value;
  }
  m_attributeValues.push_back(std::move(value));
}

SmartPtr<AttributeValue> RecordData::AccessPseudoAttribute(PseudoAttribute attribute) const {
  auto const index = static_cast<std::size_t>(attribute);
  return index < kPseudoAttributes ? m_pseudoAttributes.Get()[index] : nullptr;
}
