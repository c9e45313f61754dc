#include "lumo/services/dataimport/RecordLinkModification.h"

void RecordLinkModificationWithSimpleSourceRecords::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter(node).Into("dat:sourceRecords").Children("dat:sourceRecord", m_sourceRecords);
}

void LinkAllCombinations::CreateXMLNode(XmlNode<char>* node) const {
  RecordLinkModificationWithSimpleSourceRecords::CreateXMLNode(node);
  lumo::NodeWriter(node).Into("dat:targetRecords").Children("dat:targetRecord", m_targetRecords);
}
