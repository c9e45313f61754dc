#include "lumo/services/browse/RecordAttribute.h"

#include "lumo/xml/NodeReader.h"

RecordAttribute::RecordAttribute(XmlNode<char> const* node) : WithParameterDetails(node) {
  lumo::NodeReader in(node);
  in.Child("record", m_recordReference);
  in.Child("attribute", m_attribute);
  in.Child("hasData", m_hasData);
  in.Child("dataRevisionInfo", m_dataRevisionInfo);
  in.Child("dataCreatedRecordVersion", m_dataCreatedRecordVersion);
  in.Child("dataRetiredRecordVersion", m_dataRetiredRecordVersion);
  in.Child("dataVersionNumber", m_dataVersionNumber);
}
