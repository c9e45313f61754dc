#pragma once

#include <string>

#include "Checker.h"
#include "Store.h"

namespace sandbox {

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

}  // namespace sandbox
