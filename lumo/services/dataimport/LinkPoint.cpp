#include "lumo/services/dataimport/LinkPoint.h"

#include "lumo/xml/NodeWriter.h"

void LinkPoint::CreateXMLNode(XmlNode<char>* node) const {
  if (m_record) m_record->CreateXMLNode(node);
}

void TargettedSourceRecord::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  LinkPoint::CreateXMLNode(out.Into("dat:record").Node());
  out.Into("dat:targetRecords").Children("dat:targetRecord", m_targets);
}

void NotatedTargetRecord::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  LinkPoint::CreateXMLNode(out.Into("dat:record").Node());
  out.Child("dat:notes", m_notes);
  out.Child("dat:reverseNotes", m_reverseNotes);
}

void NotatedTargettedSourceRecord::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  LinkPoint::CreateXMLNode(out.Into("dat:record").Node());
  out.Into("dat:targetRecords").Children("dat:targetRecord", m_targets);
}
