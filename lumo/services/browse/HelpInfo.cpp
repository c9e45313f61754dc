#include "lumo/services/browse/HelpInfo.h"

#include "lumo/xml/NodeReader.h"

HelpInfo::HelpInfo(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("helpURI", m_helpURI);
  in.Child("isDatabaseHelp", m_isDatabaseHelp);
}
