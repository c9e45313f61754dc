#pragma once

#include <string>
#include <vector>

#include "lumo/services/browse/RecordLinkGroupDetail.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/RecordLinkGroupReference.h"
#include "lumo/types/WithRecordLinkGroups.h"

/// Asks for record link groups: those of a database, or those of the list, which is not sent when
/// it is empty.
class LUMO_API GetRecordLinkGroups
    : public lumo::WithRecordLinkGroups<lumo::Request<GetRecordLinkGroups>,
                                        RecordLinkGroupReference> {
 public:
  /// Key of the database whose groups are wanted; not sent when empty.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }
  /// Whether only groups with a standard name are listed; sent with the database.
  bool GetStandardNamesOnly() const { return m_standardNamesOnly; }
  void SetStandardNamesOnly(bool standardNamesOnly) { m_standardNamesOnly = standardNamesOnly; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_dbKey;
  bool m_standardNamesOnly = false;
};

/// Definitions of record link groups.
class LUMO_API GetRecordLinkGroupsResponse : public lumo::Response<GetRecordLinkGroupsResponse> {
 public:
  GetRecordLinkGroupsResponse() = default;
  explicit GetRecordLinkGroupsResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<RecordLinkGroupDetail>>& AccessRecordLinkGroupDetails() {
    return m_recordLinkGroupDetails;
  }
  std::vector<SmartPtr<RecordLinkGroupDetail>> const& AccessRecordLinkGroupDetails() const {
    return m_recordLinkGroupDetails;
  }
  void AddRecordLinkGroupDetail(SmartPtr<RecordLinkGroupDetail> const& detail) {
    m_recordLinkGroupDetails.push_back(detail);
  }

 private:
  std::vector<SmartPtr<RecordLinkGroupDetail>> m_recordLinkGroupDetails;
};

/// Describes record link groups. Makes its calls as `Operation.h` says.
class LUMO_API GetRecordLinkGroupsImpl
    : public lumo::BrowseOperation<GetRecordLinkGroupsImpl, GetRecordLinkGroups,
                                   GetRecordLinkGroupsResponse> {
 public:
  static constexpr char Name[] = "GetRecordLinkGroups";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent. The method hides the request class
  /// of the same name, which callers name as usual.
  void GetRecordLinkGroups(SmartPtr<::GetRecordLinkGroups> const& request,
                           GetRecordLinkGroupsResponse* response) {
    Call(request, response);
  }
};
