#pragma once

#include <string>

#include "sandbox/store/Store.h"
#include "sandbox/wire/Checker.h"

namespace sandbox {

/// A unit of measure: base = figure * factor + offset, in the base unit of its dimension.
struct Unit {
  std::string dimension;
  double factor = 1;
  double offset = 0;
};
/// Throws `Fault` for a symbol that does not exist.
Unit FindUnit(Store& store, std::string const& symbol);

/// Units that a request asks for.
struct UnitContext {
  std::string system;
  std::string currency;
  bool absolute = false;  ///< temperatures from absolute zero
};

UnitContext ReadUnitContext(Store& store, pugi::xml_node node);
/// The unit in which the context shows figures of `unit`; `unit` itself when it says nothing.
std::string TargetUnit(Store& store, std::string const& unit, UnitContext const& context);
/// Throws `Fault` when the units do not measure the same.
double Convert(Store& store, double value, std::string const& from, std::string const& to);
/// Appends name and symbol.
void WriteUnit(Store& store, pugi::xml_node node, std::string const& symbol);

}  // namespace sandbox
