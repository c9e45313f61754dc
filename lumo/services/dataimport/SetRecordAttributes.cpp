#include "lumo/services/dataimport/SetRecordAttributes.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void SetRecordAttributesRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  lumo::NodeWriter records = out.Into("dat:importRecords");
  for (SmartPtr<ImportRecord> const& record : m_importRecords) {
    if (!record) continue;
    std::string const mode =
        ImportRecordModes::ImportRecordMode_ToString(record->GetImportRecordMode());
    if (!mode.empty()) records.Child("zbt:" + mode, record);
  }
  out.Child("dat:importErrorMode", m_importErrorMode, ImportErrorModes::ImportErrorMode_ToString);
  if (m_commitThreshold > 0) {
    // The server knows the attribute by this name, without a colon.
    out.Into("dat:transactionControl").Attribute("zbtCommitThreshold", m_commitThreshold);
  }
}

SetRecordAttributesResponse::SetRecordAttributesResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("recordsImported").Children("record", m_recordsImported);
}
