#include "lumo/services/dataimport/GetUploadAddresses.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetUploadAddressesRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Into("dat:records").Children("dat:record", m_records);
  out.Into("dat:attributes").Children("dat:attribute", m_attributes);
}

GetUploadAddressesResponse::GetUploadAddressesResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("records").Children("record", m_recordsWithAttributeAddresses);
}
