#pragma once

#include <vector>

#include "lumo/types/RecordReference.h"

namespace lumo {

/// Adds a list of records to a request: `class A : public WithRecordReferences<Request<A>>`.
template <class Base>
class WithRecordReferences : public Base {
 public:
  std::vector<SmartPtr<RecordReference>>& AccessRecordReferences() { return m_recordReferences; }
  std::vector<SmartPtr<RecordReference>> const& AccessRecordReferences() const {
    return m_recordReferences;
  }
  void AddRecordReference(SmartPtr<RecordReference> const& record) {
    m_recordReferences.push_back(record);
  }

 protected:
  std::vector<SmartPtr<RecordReference>> m_recordReferences;
};

}  // namespace lumo
