#pragma once

#include <vector>

#include "lumo/session/IRequest.h"
#include "lumo/types/RecordReference.h"
#include "lumo/xml/NodeWriter.h"

namespace lumo {

/// Base of the requests that are about some records.
template <class T>
class RecordsRequest : public Request<T> {
 public:
  std::vector<SmartPtr<RecordReference>>& AccessRecords() { return m_records; }
  std::vector<SmartPtr<RecordReference>> const& AccessRecords() const { return m_records; }
  void AddRecord(SmartPtr<RecordReference> const& record) { m_records.push_back(record); }

 protected:
  /// The list is sent even when it is empty.
  void WriteRecords(NodeWriter& out) const {
    out.Into("zbt:recordReferences").Children("zbt:record", m_records);
  }

 private:
  std::vector<SmartPtr<RecordReference>> m_records;
};

}  // namespace lumo
