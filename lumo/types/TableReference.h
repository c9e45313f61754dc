#pragma once

#include "lumo/types/QualifiedTable.h"

/// A table with its database, as most requests name it.
class LUMO_API TableReference : public lumo::QualifiedTable<TableReference> {
 public:
  using QualifiedTable::QualifiedTable;
};
