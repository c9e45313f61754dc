#include "lumo/values/IDataValue.h"

#include "lumo/xml/NodeReader.h"

bool lumo::StrictBooleanFromText(std::string const& text) { return BooleanFromText(text); }

std::string IDataValue::GetImportNodeName() const { return GetNodeName(); }

void IDataValue::LoadCommonAttributes(XmlNode<char> const* node) {
  if (node == nullptr || node->first_attribute() == nullptr) return;
  lumo::NodeReader const in(node);
  in.Attribute("isNotApplicable", m_isNotApplicable, lumo::StrictBooleanFromText);
  if (in.Attribute("dataVersionNumber", m_dataVersionNumber)) m_hasDataVersionNumber = true;
  in.Attribute("isFallback", m_isFallback);
}
