#include "lumo/services/dataexport/GetRecordAttributesByRef.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetRecordAttributesByRefRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  for (SmartPtr<AttributeReference> const& attribute : m_attributeReferences) {
    lumo::NodeWriter result = out.Into("exp:result");  // not "attribute", unlike elsewhere
    result.Attribute("xsi:type", "zbt:LumoAttributeReference");
    if (attribute) attribute->CreateXMLNode(result.Node());
  }
  out.Children("exp:recordReference", m_recordReferences);
  out.Child("exp:unitConversionContext", m_unitConversionContext);
  out.Child("exp:filter", m_filter);
  out.Child("exp:populateGUIDs", m_populateGUIDs);
  out.Child("exp:useFallback", m_useFallback);
  out.Child("exp:binaryDataRepresentation", m_binaryDataRepresentation,
            BinaryDataRepresentations::BinaryDataRepresentation_ToString);
}

GetRecordAttributesByRefResponse::GetRecordAttributesByRefResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("results").Children("recordData", m_recordData);
}
