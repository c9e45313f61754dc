#pragma once

#include <vector>

#include "lumo/services/browse/TreeRecord.h"
#include "lumo/session/IResponse.h"
#include "lumo/xml/NodeReader.h"

namespace lumo {

/// Base of the responses that are lists of tree records.
template <class T>
class TreeRecordsResponse : public Response<T> {
 public:
  TreeRecordsResponse() = default;
  explicit TreeRecordsResponse(XmlNode<char> const* node) {
    NodeReader(node).In("treeRecords").Children("treeRecord", m_treeRecords);
  }

  std::vector<SmartPtr<TreeRecord>>& AccessTreeRecords() { return m_treeRecords; }
  std::vector<SmartPtr<TreeRecord>> const& AccessTreeRecords() const { return m_treeRecords; }
  void AddTreeRecord(SmartPtr<TreeRecord> const& record) { m_treeRecords.push_back(record); }

 private:
  std::vector<SmartPtr<TreeRecord>> m_treeRecords;
};

}  // namespace lumo
