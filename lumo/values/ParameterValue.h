#pragma once

#include <string>

#include "lumo/platform/core/OptionalPart.h"
#include "lumo/xml/FromXml.h"

/// Value of a parameter: a number or a discrete choice.
class LUMO_API ParameterValue : public lumo::FromXml<ParameterValue> {
 public:
  enum eParameterValueType : int { Numeric = 0, Discrete = 1 };
  /// Throws std::runtime_error for anything but "Numeric" and "Discrete".
  static eParameterValueType TypeFromString(std::string const& text);

  ParameterValue() = default;
  explicit ParameterValue(XmlNode<char> const* node);

  /// Whether it is a number or a choice.
  eParameterValueType GetType() const { return m_type; }
  /// "Numeric" or "Discrete".
  std::string TypeAsString() const;
  /// Throws as `TypeFromString` does.
  void SetType(std::string const& text) { m_type = TypeFromString(text); }
  /// 0 unless a number was read or set.
  double GetValue_Numeric() const { return m_numericValue; }
  /// Makes the value a number.
  void SetValue_Numeric(double value) {
    m_numericValue = value;
    m_type = Numeric;
  }
  /// Empty unless a text was read or set.
  std::string const& GetValue_Discrete() const { return m_discreteValue.Get(); }
  /// Makes the value a discrete choice.
  void SetValue_Discrete(std::string const& value) {
    m_discreteValue = value;
    m_type = Discrete;
  }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  eParameterValueType m_type = Discrete;
  double m_numericValue = 0;
  lumo::OptionalPart<std::string> m_discreteValue;
};
