#pragma once

#include "lumo/services/browse/TreeRecordsResponse.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/RecordFilter.h"
#include "lumo/types/RecordReference.h"

/// Asks for the records below another one.
class LUMO_API GetChildNodes : public lumo::Request<GetChildNodes> {
 public:
  /// The record whose children are wanted; not sent when null.
  SmartPtr<RecordReference> GetParent() const { return m_parent; }
  void SetParent(SmartPtr<RecordReference> const& parent) { m_parent = parent; }
  /// Whether the records come with their GUIDs.
  bool GetPopulateGUIDs() const { return m_populateGUIDs; }
  void SetPopulateGUIDs(bool populateGUIDs) { m_populateGUIDs = populateGUIDs; }
  /// Whether their children come too.
  bool GetRecurse() const { return m_recurse; }
  void SetRecurse(bool recurse) { m_recurse = recurse; }
  /// How deep to go when recursing; 0, the default, is left to the server.
  int GetRecurseMaxDepth() const { return m_recurseMaxDepth; }
  void SetRecurseMaxDepth(int recurseMaxDepth) { m_recurseMaxDepth = recurseMaxDepth; }
  /// Restricts the records; not sent when null.
  SmartPtr<RecordFilter> GetRecordFilter() const { return m_recordFilter; }
  void SetRecordFilter(SmartPtr<RecordFilter> const& recordFilter) {
    m_recordFilter = recordFilter;
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  SmartPtr<RecordReference> m_parent;
  bool m_populateGUIDs = false;
  bool m_recurse = false;
  int m_recurseMaxDepth = 0;
  SmartPtr<RecordFilter> m_recordFilter;
};

/// The records below another one.
class LUMO_API GetChildNodesResponse : public lumo::TreeRecordsResponse<GetChildNodesResponse> {
 public:
  using TreeRecordsResponse::TreeRecordsResponse;
};

/// Lists the records below another one. Makes its calls as `Operation.h` says.
class LUMO_API GetChildNodesImpl
    : public lumo::BrowseOperation<GetChildNodesImpl, GetChildNodes, GetChildNodesResponse> {
 public:
  static constexpr char Name[] = "GetChildNodes";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void RequestChildNodes(SmartPtr<GetChildNodes> const& request, GetChildNodesResponse* response) {
    Call(request, response);
  }
};
