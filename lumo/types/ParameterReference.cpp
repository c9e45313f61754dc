#include "lumo/types/ParameterReference.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

ParameterReference::ParameterReference(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.Child("parameterIdentity", m_id);
  in.Child("name", m_name);
}

void ParameterReference::CreateXMLNode(XmlNode<char>* node) const {
  LumoEntityReference::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  if (m_id != 0) {  // an identity makes the name superfluous
    out.Child("zbt:parameterIdentity", m_id);
  } else {
    out.ChildIfSet("zbt:name", m_name);
  }
}
