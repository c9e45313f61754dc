#include "lumo/services/dataimport/LinkPoint.h"

void LinkPoint::CreateXMLNode(XmlNode<char>* node) const {
  if (m_record) m_record->CreateXMLNode(node);
}

void NotatedTargetRecord::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  LinkPoint::CreateXMLNode(out.Into("dat:record").Node());
  out.Child("dat:notes", m_notes);
  out.Child("dat:reverseNotes", m_reverseNotes);
}
