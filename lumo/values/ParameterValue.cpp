#include "lumo/values/ParameterValue.h"

#include <stdexcept>

ParameterValue::eParameterValueType ParameterValue::TypeFromString(std::string const& text) {
  if (text == "Numeric") return Numeric;
  if (text == "Discrete") return Discrete;
  throw std::runtime_error("unknown parameter value type valid types are Numeric and Discrete");
}

std::string ParameterValue::TypeAsString() const {
  return m_type == Numeric ? "Numeric" : "Discrete";
}
