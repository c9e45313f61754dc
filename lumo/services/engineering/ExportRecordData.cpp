#include "lumo/services/engineering/ExportRecordData.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void ExportRecordDataRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  WriteRecords(out);
  out.List("eng:attributes", "eng:attribute", m_attributes);
  out.Child("eng:exporterKey", m_exporterKey);
  out.Child("eng:unitConversionContext", m_unitConversionContext);
  out.Child("eng:recordFilter", m_recordFilter);
  WriteParameterValues(out);
  WriteStop(out);
}

void ExportRecordDataRequest::WriteParameterValues(lumo::NodeWriter& out) const {
  if (m_parameterValues.empty() && m_significantFigures <= 0) return;
  lumo::NodeWriter values = out.Into("eng:parameterValues");
  for (UnittedParameterValue const& value : m_parameterValues) {
    value.CreateXMLNode(values.Into("eng:parameterValue").Node());
  }
  if (m_significantFigures > 0) values.Attribute("eng:significantFigures", m_significantFigures);
}

void ExportRecordDataRequest::WriteStop(lumo::NodeWriter& out) const {
  if (m_stopBeforeIndex < 0 && m_stopBeforeId.empty()) return;
  lumo::NodeWriter stop = out.Into("eng:stopBefore");
  if (m_stopBeforeIndex >= 0) {
    stop.Into("eng:index").Attribute("eng:value", m_stopBeforeIndex);
  } else {
    stop.Into("eng:transformId").Attribute("eng:value", m_stopBeforeId);
  }
}

ExportRecordDataResponse::ExportRecordDataResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Text(m_exportResult);
}
