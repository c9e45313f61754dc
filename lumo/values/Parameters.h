#pragma once

#include <vector>

#include "lumo/types/ParameterInformation.h"

/// The parameters on which the figures of a value depend.
class LUMO_API Parameters : public lumo::FromXml<Parameters> {
 public:
  Parameters() = default;
  explicit Parameters(XmlNode<char> const* node);

  std::vector<SmartPtr<ParameterInformation>>& AccessParameters() { return m_parameters; }
  std::vector<SmartPtr<ParameterInformation>> const& AccessParameters() const {
    return m_parameters;
  }
  void AddParameter(SmartPtr<ParameterInformation> const& parameter) {
    m_parameters.push_back(parameter);
  }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::vector<SmartPtr<ParameterInformation>> m_parameters;
};
