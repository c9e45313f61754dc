#pragma once

#include <string>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"
#include "lumo/values/FloatFunctionalDataType.h"
#include "lumo/values/FloatFunctionalGraph.h"

/// Curves given as series of x and y.
class LUMO_API FloatFunctionalSeriesDataType
    : public lumo::DataValue<FloatFunctionalSeriesDataType, FloatFunctionalDataType> {
 public:
  FloatFunctionalSeriesDataType() = default;
  explicit FloatFunctionalSeriesDataType(XmlNode<char> const* node);
  std::string GetNodeName() const override { return "FloatFunctionalSeriesDataValue"; }
  std::string GetTypeString() const override {
    return AttributeTypes::FLOAT_FUNCTIONAL_SERIES_TYPE_STRING;
  }

  /// Null when the reply held none; not sent then.
  SmartPtr<FloatFunctionalSeriesGraph> GetGraph() const { return m_graph; }
  void SetGraph(SmartPtr<FloatFunctionalSeriesGraph> const& graph) { m_graph = graph; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  SmartPtr<FloatFunctionalSeriesGraph> m_graph;
};
