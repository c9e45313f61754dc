#include "lumo/values/HyperlinkDataType.h"

HyperlinkDataType::HyperlinkDataType(XmlNode<char> const* node) {
  LoadCommonAttributes(node);
  lumo::NodeReader in(node);
  in.Child("Value", m_value);
  in.Child("Description", m_description);
}

void HyperlinkDataType::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:Value", m_value);
  out.Child("zbt:Description", m_description);
}
