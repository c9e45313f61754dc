#include "lumo/services/browse/GetRecordAttributes.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetRecordAttributesRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Into("zbt:recordReferences").Children("zbt:record", m_recordReferences);
  // A flag is sent as the number 1, or not at all.
  out.ChildIfSet("brow:includeMetaAttributes", int{m_includeMetaAttributes});
  out.ChildIfSet("brow:includeEmptyAttributes", int{m_includeEmptyAttributes});
  out.ChildIfSet("brow:includeParameterDetails", int{m_includeParameterDetails});
  out.ChildIfSet("brow:includeFullAttributeDetail", int{m_includeFullAttributeDetail});
}

GetRecordAttributesResponse::GetRecordAttributesResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("recordAttributes").Children("recordAttribute", m_recordAttributes);
}

void GetRecordAttributesImpl::RequestRecordAttributes(
    std::vector<SmartPtr<RecordReference>> const& records, GetRecordAttributesResponse* response) {
  RequestRecordAttributes(records, response, false, false, false, false);
}

void GetRecordAttributesImpl::RequestRecordAttributes(
    std::vector<SmartPtr<RecordReference>> const& records, GetRecordAttributesResponse* response,
    bool includeMeta, bool includeEmpty, bool includeParameterDetails, bool includeFullDetail) {
  GuardMemory(response, SessionLogger(), [&] {
    auto const request = GetRecordAttributesRequest::CreateOne();
    request->AccessRecordReferences() = records;
    request->SetIncludeMetaAttributes(includeMeta);
    request->SetIncludeEmptyAttributes(includeEmpty);
    request->SetIncludeParameterDetails(includeParameterDetails);
    request->SetIncludeFullAttributeDetail(includeFullDetail);
    RequestRecordAttributes(request, response);
  });
}
