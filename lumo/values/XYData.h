#pragma once

#include <string>
#include <vector>

#include "lumo/values/ParameterValue.h"

/// One datum of a curve: an x, and a y that the derived class holds.
class LUMO_API XYDatum : public SmartPtrTarget_ts {
 public:
  /// The enumerators hide the classes of the same names inside this class.
  enum eDataType : int { XYPoint = 0, XYRange = 1, Unknown = 2 };

  XYDatum() = default;
  /// Throws std::runtime_error for an "Estimated" that is no boolean.
  explicit XYDatum(XmlNode<char> const* node);
  /// Whether it is a point or a range.
  virtual eDataType GetType() const = 0;

  /// Null when the reply gave none; not sent then.
  SmartPtr<ParameterValue> GetX() const { return m_x; }
  void SetX(SmartPtr<ParameterValue> const& x) { m_x = x; }
  /// Whether it is an estimate.
  bool GetIsEstimated() const { return m_isEstimated; }
  void SetIsEstimated(bool isEstimated) { m_isEstimated = isEstimated; }

  virtual void CreateXMLNode(XmlNode<char>* node) const;

 private:
  bool m_isEstimated = false;
  SmartPtr<ParameterValue> m_x;
};

/// A datum with one y.
class LUMO_API XYPoint : public lumo::FromXml<XYPoint, XYDatum> {
 public:
  XYPoint() = default;
  explicit XYPoint(XmlNode<char> const* node);
  eDataType GetType() const override { return XYDatum::XYPoint; }

  /// The figure.
  double GetY() const { return m_y; }
  void SetY(double y) { m_y = y; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  double m_y = 0;
};

/// A datum with a range of y.
class LUMO_API XYRange : public lumo::FromXml<XYRange, XYDatum> {
 public:
  XYRange() = default;
  explicit XYRange(XmlNode<char> const* node);
  eDataType GetType() const override { return XYDatum::XYRange; }

  /// The low end.
  double GetLowerY() const { return m_lowerY; }
  void SetLowerY(double y) { m_lowerY = y; }
  /// The high end.
  double GetUpperY() const { return m_upperY; }
  void SetUpperY(double y) { m_upperY = y; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  double m_lowerY = 0;
  double m_upperY = 0;
};

/// The data of one curve. Data of a type other than point and range are skipped when read.
class LUMO_API XYData : public lumo::FromXml<XYData> {
 public:
  /// "XYPoint", "XYRange", or "Unknown".
  static std::string GetTypeAsString(XYDatum::eDataType type);

  XYData() = default;
  explicit XYData(XmlNode<char> const* node);

  std::vector<SmartPtr<XYDatum>>& AccessPoints() { return m_points; }
  std::vector<SmartPtr<XYDatum>> const& AccessPoints() const { return m_points; }
  void AddPoint(SmartPtr<XYDatum> const& point) { m_points.push_back(point); }
  /// Type of the first datum; `XYDatum::Unknown` when there is none.
  XYDatum::eDataType GetType() const;

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::vector<SmartPtr<XYDatum>> m_points;
};
