#pragma once

#include <string>
#include <vector>

#include "lumo/platform/core/LazyPart.h"
#include "lumo/types/ParameterInformation.h"
#include "lumo/values/Constraints.h"
#include "lumo/values/GraphDecoration.h"
#include "lumo/values/XYData.h"

/// One curve of a graph.
class LUMO_API Series : public lumo::FromXml<Series> {
 public:
  Series() = default;
  explicit Series(XmlNode<char> const* node);

  /// Never null after construction.
  SmartPtr<XYData> GetXYPoints() const { return m_xyPoints.Get(); }
  void SetXYPoints(SmartPtr<XYData> const& points) { m_xyPoints = points; }
  /// The parameter values at which the curve holds. Never null after construction.
  SmartPtr<Constraints> GetConstraints() const { return m_constraints.Get(); }
  void SetConstraints(SmartPtr<Constraints> const& constraints) { m_constraints = constraints; }
  /// How the curve is drawn; `Lines` by default. Only sent: replies are not asked for it.
  GraphDecoration::eOptions GetDecoration() const { return m_decoration; }
  void SetDecoration(GraphDecoration::eOptions decoration) { m_decoration = decoration; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  lumo::LazyPart<XYData> m_xyPoints;
  lumo::LazyPart<Constraints> m_constraints;
  GraphDecoration::eOptions m_decoration = GraphDecoration::Lines;
};

/// A graph of curves.
class LUMO_API FloatFunctionalGraph : public lumo::FromXml<FloatFunctionalGraph> {
 public:
  FloatFunctionalGraph() = default;
  explicit FloatFunctionalGraph(XmlNode<char> const* node);

  std::vector<SmartPtr<Series>>& AccessSeries() { return m_series; }
  std::vector<SmartPtr<Series>> const& AccessSeries() const { return m_series; }
  void AddSeries(SmartPtr<Series> const& series) { m_series.push_back(series); }
  /// Whether clients should not show the graph.
  bool GetHideGraph() const { return m_hideGraph; }
  void SetHideGraph(bool hide) { m_hideGraph = hide; }
  /// Whether the y-axis of the graph is logarithmic.
  bool GetLogarithmicYAxis() const { return m_logarithmicYAxis; }
  void SetLogarithmicYAxis(bool logarithmic) { m_logarithmicYAxis = logarithmic; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  bool m_hideGraph = false;
  bool m_logarithmicYAxis = false;
  std::vector<SmartPtr<Series>> m_series;
};

/// A graph of curves over one parameter.
class LUMO_API FloatFunctionalSeriesGraph
    : public lumo::FromXml<FloatFunctionalSeriesGraph, FloatFunctionalGraph> {
 public:
  FloatFunctionalSeriesGraph() = default;
  explicit FloatFunctionalSeriesGraph(XmlNode<char> const* node);

  /// Null when the reply named none; not sent then.
  SmartPtr<ParameterInformation> GetXAxisParameter() const { return m_xAxisParameter; }
  void SetXAxisParameter(SmartPtr<ParameterInformation> const& parameter) {
    m_xAxisParameter = parameter;
  }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  SmartPtr<ParameterInformation> m_xAxisParameter;
};
