#include "lumo/services/dataimport/ImportAttributeValue.h"

#include "lumo/xml/NodeWriter.h"

void ImportAttributeValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:attribute", m_attributeReference);
  if (m_dataValue) {
    out.Into("zbt:value").Child("zbt:" + m_dataValue->GetImportNodeName(), m_dataValue);
  }
}
