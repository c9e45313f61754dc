#pragma once

#include "lumo/services/browse/TreeRecord.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/TableReference.h"

/// Asks for the top of the record tree of a table.
class LUMO_API GetRootNode : public lumo::Request<GetRootNode> {
 public:
  /// Not sent when null.
  SmartPtr<TableReference> GetTable() const { return m_table; }
  void SetTable(SmartPtr<TableReference> const& table) { m_table = table; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  SmartPtr<TableReference> m_table;
};

/// The top of a record tree.
class LUMO_API GetRootNodeResponse : public lumo::Response<GetRootNodeResponse> {
 public:
  GetRootNodeResponse() = default;
  explicit GetRootNodeResponse(XmlNode<char> const* node);

  /// Null when the reply held none.
  SmartPtr<TreeRecord> GetRootNode() const { return m_rootNode; }
  void SetRootNode(SmartPtr<TreeRecord> const& rootNode) { m_rootNode = rootNode; }

 private:
  SmartPtr<TreeRecord> m_rootNode;
};

/// Finds the top of the record tree of a table. Makes its calls as `Operation.h` says.
class LUMO_API GetRootNodeImpl
    : public lumo::BrowseOperation<GetRootNodeImpl, GetRootNode, GetRootNodeResponse> {
 public:
  static constexpr char Name[] = "GetRootNode";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void RequestRootNode(SmartPtr<GetRootNode> const& request, GetRootNodeResponse* response) {
    Call(request, response);
  }
};
