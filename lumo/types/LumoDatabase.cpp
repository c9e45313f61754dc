#include "lumo/types/LumoDatabase.h"

#include "lumo/xml/NodeReader.h"

LumoDatabase::LumoDatabase(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader(node).Child("volumeName", m_name);
}
