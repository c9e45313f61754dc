#pragma once

#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/model/Attributes.h"
#include "sandbox/model/Records.h"
#include "sandbox/model/Units.h"
#include "sandbox/operations/engineering/Exporters.h"

namespace sandbox {

/// An export as the request says it.
struct Export {
  Exporter const* exporter = nullptr;
  std::vector<Record> records;
  std::vector<Attribute> attributes;
  UnitContext units;
  int significantFigures = 0;
  std::optional<double> temperature;  ///< in degC
  int stopBefore = static_cast<int>(std::size(kTransforms));
};

/// What the exporter puts out; throws `Fault` when a record lacks what it needs.
std::string Output(Store& store, Export const& job);

}  // namespace sandbox
