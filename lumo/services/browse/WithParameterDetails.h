#pragma once

#include <vector>

#include "lumo/services/browse/ParameterDetail.h"
#include "lumo/xml/NodeReader.h"

namespace lumo {

/// Adds a list of parameters to a class that is read from replies.
template <class Base>
class WithParameterDetails : public Base {
 public:
  std::vector<SmartPtr<ParameterDetail>>& AccessParameterDetails() { return m_parameterDetails; }
  std::vector<SmartPtr<ParameterDetail>> const& AccessParameterDetails() const {
    return m_parameterDetails;
  }
  void AddParameterDetail(SmartPtr<ParameterDetail> const& detail) {
    m_parameterDetails.push_back(detail);
  }

 protected:
  WithParameterDetails() = default;
  explicit WithParameterDetails(XmlNode<char> const* node) {
    NodeReader(node).In("parameterDetails").Children("parameterDetail", m_parameterDetails);
  }

 private:
  std::vector<SmartPtr<ParameterDetail>> m_parameterDetails;
};

}  // namespace lumo
