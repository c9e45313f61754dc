#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "lumo/toolkit/Client.h"

namespace cli::browse {

/// Which records a spreadsheet is to hold, and what of them.
struct WorkbookChoice {
  std::string database = {};
  std::string table = {};
  std::vector<lumo::RecordId> records = {};  ///< when there are none, those of the condition
  std::string where = {};                    ///< empty for all of the table
  std::string text = {};                     ///< words instead of a condition
  std::vector<std::string> attributes = {};  ///< all for none
  std::string unitSystem = {};
  std::string currency = {};
};

struct ServerOptions {
  int port = 0;  ///< 0: any that is free
  /// Words what to do next about an error.
  std::function<std::string(lumo::Error const&)> advice = {};
  /// Makes a spreadsheet; called by several threads.
  std::function<std::string(WorkbookChoice const&)> workbook = {};
};

/// Shows the materials of a server as a page, on 127.0.0.1 alone. Runs from construction to
/// destruction on threads of its own.
class Server {
 public:
  /// Throws `lumo::Error` (InvalidArgument) when it cannot listen on that port.
  Server(lumo::Client client, ServerOptions options);
  ~Server();
  Server(Server const&) = delete;
  Server& operator=(Server const&) = delete;

  int Port() const;
  /// The address of the page, with the token that lets in; `view` is what it shows first, such as
  /// "#/chart?db=...".
  std::string Address(std::string const& view = "") const;
  /// The same for one use, for the command line of a browser.
  std::string AddressForOnce(std::string const& view = "") const;
  /// Since the last request was answered; 0 while one is under way.
  std::chrono::seconds Idle() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace cli::browse
