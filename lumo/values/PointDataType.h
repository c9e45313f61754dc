#pragma once

#include <string>
#include <vector>

#include "lumo/platform/core/LazyPart.h"
#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"
#include "lumo/values/ParameterReferenceAndValue.h"
#include "lumo/values/Parameters.h"
#include "lumo/values/UnittedRealDataType.h"

/// One figure and the parameter values under which it holds.
class LUMO_API PointValueWithParameters : public lumo::FromXml<PointValueWithParameters> {
 public:
  PointValueWithParameters() = default;
  explicit PointValueWithParameters(XmlNode<char> const* node);

  /// The figure.
  double GetValue() const { return m_value; }
  void SetValue(double value) { m_value = value; }
  /// Never null after construction.
  SmartPtr<ParameterReferencesAndValues> GetValueParameters() const {
    return m_valueParameters.Get();
  }
  void SetValueParameters(SmartPtr<ParameterReferencesAndValues> const& parameters) {
    m_valueParameters = parameters;
  }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  double m_value = 0;
  lumo::LazyPart<ParameterReferencesAndValues> m_valueParameters;
};

/// One or more figures, each perhaps for other values of the parameters.
class LUMO_API PointDataType : public lumo::DataValue<PointDataType, UnittedRealDataType> {
 public:
  PointDataType() = default;
  explicit PointDataType(XmlNode<char> const* node);
  std::string GetNodeName() const override { return "PointDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::POINT_TYPE_STRING; }

  std::vector<SmartPtr<PointValueWithParameters>>& AccessPoints() { return m_points; }
  std::vector<SmartPtr<PointValueWithParameters>> const& AccessPoints() const { return m_points; }
  void AddPoint(SmartPtr<PointValueWithParameters> const& point) { m_points.push_back(point); }
  /// Never null after construction.
  SmartPtr<Parameters> GetParameters() const { return m_parameters.Get(); }
  void SetParameters(SmartPtr<Parameters> const& parameters) { m_parameters = parameters; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<PointValueWithParameters>> m_points;
  lumo::LazyPart<Parameters> m_parameters;
};
