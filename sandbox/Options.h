#pragma once

#include <string>

#include "sandbox/http/Server.h"
#include "sandbox/seed/Seed.h"

namespace sandbox {

/// What the command line asks for.
struct Options {
  int port = 0;        ///< 0: any free one
  int ttlSeconds = 0;  ///< 0: until it is stopped
  bool stopOnEof = false;
  std::string database = ":memory:";
  Content content = Content::Full;
  int records = 0;
  bool log = false;
  std::string logFile;  ///< empty: standard error
  ServerOptions server;
};

/// Reads them. Prints what there is to print and ends the program for `--help`, `--version` and,
/// with status 2, for what is wrong.
Options ReadOptions(int count, char** texts);

}  // namespace sandbox
