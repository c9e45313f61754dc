#pragma once

#include <string>

#include "sandbox/store/Store.h"
#include "sandbox/wire/Checker.h"

namespace sandbox {

struct Parameter {
  int id = 0;
  std::string name;
  std::string unit;
  std::string type;
};

/// `dbKey`, when it is set, takes the database that the reference names.
Parameter ReadParameter(Store& store, pugi::xml_node node, std::string* dbKey = nullptr);
/// Appends the children by which a reply names a parameter.
void WriteParameter(pugi::xml_node node, Parameter const& parameter, std::string const& dbKey);

}  // namespace sandbox
