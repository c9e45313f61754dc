#include "lumo/services/engineering/GetExporterParameters.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

RecordExporterParameters::RecordExporterParameters(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("Record", m_record);
  in.In("Attributes").Children("Attribute", m_attributes);
}

void GetExporterParametersRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  WriteRecords(out);
  out.Child("eng:ExporterKey", m_exporterKey);  // capitals here, none in the export itself
  out.Child("eng:UnitConversionContext", m_unitConversionContext);
  out.Child("eng:populateGUIDs", m_populateGUIDs);
}

GetExporterParametersResponse::GetExporterParametersResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("Records").Children("Record", m_records);
}
