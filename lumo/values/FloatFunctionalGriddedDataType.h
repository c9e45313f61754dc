#pragma once

#include <string>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"
#include "lumo/values/FloatFunctionalDataType.h"
#include "lumo/values/FloatFunctionalValues.h"
#include "lumo/values/GraphDecoration.h"

/// Curves given as values, each with the parameter values at which it holds.
class LUMO_API FloatFunctionalGriddedDataType
    : public lumo::DataValue<FloatFunctionalGriddedDataType, FloatFunctionalDataType> {
 public:
  FloatFunctionalGriddedDataType() = default;
  explicit FloatFunctionalGriddedDataType(XmlNode<char> const* node);
  std::string GetNodeName() const override { return "FloatFunctionalGriddedDataValue"; }
  std::string GetTypeString() const override {
    return AttributeTypes::FLOAT_FUNCTIONAL_GRIDDED_TYPE_STRING;
  }

  /// Null when the reply named none; not sent then.
  SmartPtr<ParameterInformation> GetDefaultXAxisParameter() const {
    return m_defaultXAxisParameter;
  }
  void SetDefaultXAxisParameter(SmartPtr<ParameterInformation> const& parameter) {
    m_defaultXAxisParameter = parameter;
  }
  /// How the curves are drawn; `Lines` by default.
  GraphDecoration::eOptions GetDecoration() const { return m_decoration; }
  void SetDecoration(GraphDecoration::eOptions decoration) { m_decoration = decoration; }
  /// Null when the reply held none; not sent then.
  SmartPtr<FloatFunctionalValues> GetValues() const { return m_values; }
  void SetValues(SmartPtr<FloatFunctionalValues> const& values) { m_values = values; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  GraphDecoration::eOptions m_decoration = GraphDecoration::Lines;
  SmartPtr<FloatFunctionalValues> m_values;
  SmartPtr<ParameterInformation> m_defaultXAxisParameter;
};
