#pragma once

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Units.h"

/// What a failing call says, for tests; the test fails when nothing is thrown.
template <class Work>
lumo::Error ErrorOf(Work work) {
  try {
    work();
  } catch (lumo::Error const& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was thrown";
  return {lumo::ErrorCode::InvalidArgument, ""};
}

inline lumo::Attribute AttributeNamed(char const* name, lumo::AttributeType type,
                                      char const* unit = "") {
  lumo::Attribute attribute;
  attribute.name = name;
  attribute.type = type;
  attribute.unit = unit;
  return attribute;
}

/// Factors as a server gives them, for a few units.
inline lumo::Units SomeUnits() {
  return lumo::Units(std::map<std::string, std::vector<lumo::UnitStep>>{
      {"MPa", {{"MPa", 1, 0}, {"Pa", 1e6, 0}, {"GPa", 1e-3, 0}, {"psi", 1e6 / 6894.757293168, 0}}},
      {"GPa", {{"MPa", 1e3, 0}, {"Pa", 1e9, 0}, {"GPa", 1, 0}}},
      {"psi", {{"MPa", 6894.757293168 / 1e6, 0}}},
      {"kg/m^3", {{"kg/m^3", 1, 0}, {"g/cm^3", 1e-3, 0}, {"lb/in^3", 1 / 27679.904710203, 0}}},
      {"lb/in^3", {{"kg/m^3", 27679.904710203, 0}}},
      {"degC", {{"degC", 1, 0}, {"K", 1, 273.15}, {"degF", 1.8, 32}}},
      {"K", {{"degC", 1, -273.15}}},
      {"%", {{"%", 1, 0}}},
      {"broken", {{"never", 0, 0}, {"negative", -1, 0}}},
  });
}
