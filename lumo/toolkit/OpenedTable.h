#pragma once

#include <memory>
#include <string>
#include <utility>

#include "lumo/toolkit/Pool.h"
#include "lumo/toolkit/TableInfo.h"

namespace lumo {

/// A table, and the connections over which more is asked of it. Not installed.
struct OpenedTable {
  OpenedTable(std::shared_ptr<Pool> connections, std::string const& database,
              std::string const& table)
      : pool(std::move(connections)), info(*pool->Lend(), database, table) {}

  std::shared_ptr<Pool> pool;
  TableInfo info;
};

}  // namespace lumo
