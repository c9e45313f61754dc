#include "lumo/types/NamedRecord.h"

#include "lumo/xml/NodeReader.h"

NamedRecord::NamedRecord(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("shortName", m_shortName);
  in.Child("fullName", m_longName);
  in.Child("recordReference", m_recordReference);
}
