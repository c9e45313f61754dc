#include "lumo/services/engineering/ExporterParameter.h"

#include "lumo/xml/NodeReader.h"

ExporterParameter::ExporterParameter(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.Attribute("id", m_id);
  in.Attribute("usage", m_usage);
}
