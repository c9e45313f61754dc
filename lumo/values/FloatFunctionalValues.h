#pragma once

#include <string>
#include <vector>

#include "lumo/platform/core/LazyPart.h"
#include "lumo/values/Constraints.h"

/// One value of a gridded curve and the parameter values at which it holds.
class LUMO_API FloatFunctionalValue : public SmartPtrTarget_ts {
 public:
  enum eValueKind : int { None = 0, Point = 1, Range = 2 };

  FloatFunctionalValue() = default;
  /// Throws std::runtime_error for an "Estimated" that is no boolean.
  explicit FloatFunctionalValue(XmlNode<char> const* node);
  /// Whether it is a point or a range.
  virtual eValueKind GetType() const = 0;
  /// Name of the value's type on the wire.
  virtual std::string GetNodeType() const = 0;

  /// Never null after construction.
  SmartPtr<Constraints> GetConstraints() const { return m_constraints.Get(); }
  void SetConstraints(SmartPtr<Constraints> const& constraints) { m_constraints = constraints; }
  /// Whether it is an estimate.
  bool GetEstimated() const { return m_estimated; }
  void SetEstimated(bool estimated) { m_estimated = estimated; }

  virtual void CreateXMLNode(XmlNode<char>* node) const;

 private:
  bool m_estimated = false;
  lumo::LazyPart<Constraints> m_constraints;
};

/// A single figure.
class LUMO_API FloatFunctionalPointValue
    : public lumo::FromXml<FloatFunctionalPointValue, FloatFunctionalValue> {
 public:
  FloatFunctionalPointValue() = default;
  explicit FloatFunctionalPointValue(XmlNode<char> const* node);
  eValueKind GetType() const override { return Point; }
  std::string GetNodeType() const override { return "FloatFunctionalPointValue"; }

  /// The figure.
  double GetValue() const { return m_value; }
  void SetValue(double value) { m_value = value; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  double m_value = 0;
};

/// A range of figures.
class LUMO_API FloatFunctionalRangeValue
    : public lumo::FromXml<FloatFunctionalRangeValue, FloatFunctionalValue> {
 public:
  FloatFunctionalRangeValue() = default;
  explicit FloatFunctionalRangeValue(XmlNode<char> const* node);
  eValueKind GetType() const override { return Range; }
  /// "Ranged" on the wire, unlike the class.
  std::string GetNodeType() const override { return "FloatFunctionalRangedValue"; }

  /// The low end.
  double GetLowValue() const { return m_lowValue; }
  void SetLowValue(double value) { m_lowValue = value; }
  /// The high end.
  double GetHighValue() const { return m_highValue; }
  void SetHighValue(double value) { m_highValue = value; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  double m_lowValue = 0;
  double m_highValue = 0;
};

/// The values of a gridded curve. Values of another type are skipped when read.
class LUMO_API FloatFunctionalValues : public lumo::FromXml<FloatFunctionalValues> {
 public:
  FloatFunctionalValues() = default;
  explicit FloatFunctionalValues(XmlNode<char> const* node);

  std::vector<SmartPtr<FloatFunctionalValue>>& AccessValues() { return m_values; }
  std::vector<SmartPtr<FloatFunctionalValue>> const& AccessValues() const { return m_values; }
  void AddValue(SmartPtr<FloatFunctionalValue> const& value) { m_values.push_back(value); }
  /// Kind of the first value; `None` when there is none.
  FloatFunctionalValue::eValueKind GetType() const;

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::vector<SmartPtr<FloatFunctionalValue>> m_values;
};
