#pragma once

#include "lumo/types/QualifiedTable.h"

/// A table with its database; the same fields and form as `TableReference`, for the requests that
/// are typed on this class.
class LUMO_API LumoTableReference : public lumo::QualifiedTable<LumoTableReference> {
 public:
  using QualifiedTable::QualifiedTable;
};
