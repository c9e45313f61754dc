#pragma once

#include <functional>
#include <string>

#include "cli/browse/Server.h"
#include "lumo/toolkit/Client.h"

namespace cli::browse {

struct BrowseOptions {
  std::string database = {};  ///< shown first, with the table; empty for the first there is
  std::string table = {};
  int port = 0;         ///< 0: any that is free
  bool opens = false;   ///< a browser, too
  int idleSeconds = 0;  ///< ends when nobody asked for anything for so long; 0: never
};

/// Serves the page until `isOver`, and prints its address on standard output. Throws `lumo::Error`
/// for a database or table that is not there and for a port that is taken, `Failure` when the
/// address cannot be printed.
/// `server` lacks the port alone.
void Run(lumo::Client const& client, BrowseOptions const& options,
         std::function<bool()> const& isOver, ServerOptions server);

}  // namespace cli::browse
