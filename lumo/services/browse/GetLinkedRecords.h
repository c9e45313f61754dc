#pragma once

#include <vector>

#include "lumo/services/browse/SourceRecord.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/RecordFilter.h"
#include "lumo/types/RecordLinkGroupReference.h"
#include "lumo/types/WithRecordLinkGroups.h"
#include "lumo/types/WithRecordReferences.h"

/// Asks for the records to which others are linked: the link groups to follow, and the records
/// whose links are wanted. Of either nothing is sent when there are none.
class LUMO_API GetLinkedRecordsRequest
    : public lumo::WithRecordLinkGroups<
          lumo::WithRecordReferences<lumo::Request<GetLinkedRecordsRequest>>,
          RecordLinkGroupReference> {
 public:
  /// Whether the records come with their GUIDs.
  bool GetPopulateGUIDs() const { return m_populateGUIDs; }
  void SetPopulateGUIDs(bool populateGUIDs) { m_populateGUIDs = populateGUIDs; }
  /// Restricts the linked records; not sent when null.
  SmartPtr<RecordFilter> GetRecordFilter() const { return m_recordFilter; }
  void SetRecordFilter(SmartPtr<RecordFilter> const& recordFilter) {
    m_recordFilter = recordFilter;
  }
  /// The link groups to follow.
  void SetRecordLinkGroups(std::vector<SmartPtr<RecordLinkGroupReference>> const& groups) {
    m_recordLinkGroups = groups;
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  bool m_populateGUIDs = false;
  SmartPtr<RecordFilter> m_recordFilter;
};

/// Records and those to which they are linked.
class LUMO_API GetLinkedRecordsResponse : public lumo::Response<GetLinkedRecordsResponse> {
 public:
  GetLinkedRecordsResponse() = default;
  explicit GetLinkedRecordsResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<SourceRecord>>& AccessSourceRecords() { return m_sourceRecords; }
  std::vector<SmartPtr<SourceRecord>> const& AccessSourceRecords() const { return m_sourceRecords; }
  void AddSourceRecord(SmartPtr<SourceRecord> const& record) { m_sourceRecords.push_back(record); }

 private:
  std::vector<SmartPtr<SourceRecord>> m_sourceRecords;
};

/// Follows record links. Makes its calls as `Operation.h` says.
class LUMO_API GetLinkedRecordsImpl
    : public lumo::BrowseOperation<GetLinkedRecordsImpl, GetLinkedRecordsRequest,
                                   GetLinkedRecordsResponse> {
 public:
  static constexpr char Name[] = "GetLinkedRecords";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void GetLinkedRecords(SmartPtr<GetLinkedRecordsRequest> const& request,
                        GetLinkedRecordsResponse* response) {
    Call(request, response);
  }
};
