#pragma once

#include <string>

#include "lumo/platform/core/Counted.h"

/// Value of a parameter: a number or a discrete choice.
class LUMO_API ParameterValue : public lumo::Counted<ParameterValue> {
 public:
  enum eParameterValueType : int { Numeric = 0, Discrete = 1 };
  /// Throws std::runtime_error for anything but "Numeric" and "Discrete".
  static eParameterValueType TypeFromString(std::string const& text);

  eParameterValueType GetType() const { return m_type; }
  /// "Numeric" or "Discrete".
  std::string TypeAsString() const;
  /// Throws as `TypeFromString` does.
  void SetType(std::string const& text) { m_type = TypeFromString(text); }
  double GetValue_Numeric() const { return m_numericValue; }
  void SetValue_Numeric(double value) { m_numericValue = value; }
  std::string const& GetValue_Discrete() const { return m_discreteValue; }
  void SetValue_Discrete(std::string const& value) { m_discreteValue = value; }

 private:
  eParameterValueType m_type = Discrete;
  double m_numericValue = 0;
  std::string m_discreteValue;
};
