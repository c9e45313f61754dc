#pragma once

#include <cstddef>
#include <memory>

#include "python/Parts.h"

namespace lumo::python {

/// A column of a table, which it keeps alive.
struct ColumnView {
  std::shared_ptr<Chunks const> table;
  std::size_t place = 0;

  Field const& FieldOf() const { return table->fields[place]; }
};

}  // namespace lumo::python
