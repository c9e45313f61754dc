#include "cli/browse/Command.h"

#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <iostream>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "cli/Failure.h"

namespace cli::browse {
namespace {

std::string Escaped(std::string const& text) {
  std::string escaped;
  for (char const c : text) {
    auto const byte = static_cast<unsigned char>(c);
    bool const isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                         (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
    if (isPlain) {
      escaped += c;
    } else {
      escaped += '%';
      escaped += "0123456789ABCDEF"[byte >> 4U];
      escaped += "0123456789ABCDEF"[byte & 15U];
    }
  }
  return escaped;
}

/// What the page shows first.
std::string ViewOf(lumo::Client const& client, BrowseOptions const& options) {
  if (options.table.empty()) return "";
  lumo::Table const table = client.OpenTable(options.database, options.table);
  return "#/start?db=" + Escaped(table.Database()) + "&table=" + Escaped(table.Name());
}

/// The environment without passwords, such as LUMO_PASSWORD and LUMO_PROXY_PASSWORD.
std::vector<char*> EnvironmentForOthers() {
  std::vector<char*> kept;
  for (char** one = environ; *one != nullptr; ++one) {
    std::string_view const text = *one;
    bool const isOurs = text.substr(0, 5) == "LUMO_";
    if (!isOurs || text.substr(0, text.find('=')).find("PASSWORD") == std::string_view::npos) {
      kept.push_back(*one);
    }
  }
  kept.push_back(nullptr);
  return kept;
}

/// Asks the desktop to show an address; false when there is none to ask. A browser that this starts
/// does not end by Ctrl-C here.
bool Open(std::string const& address) {
  std::string program = "xdg-open";
  std::string argument = address;
  char* const arguments[] = {program.data(), argument.data(), nullptr};
  signal(SIGCHLD, SIG_IGN);  // its end is of no interest
  posix_spawnattr_t how;
  posix_spawnattr_init(&how);
  posix_spawnattr_setflags(&how, POSIX_SPAWN_SETSID);
  pid_t child = 0;
  bool const isDone = posix_spawnp(&child, "xdg-open", nullptr, &how, arguments,
                                   EnvironmentForOthers().data()) == 0;
  posix_spawnattr_destroy(&how);
  return isDone;
}

}  // namespace

void Run(lumo::Client const& client, BrowseOptions const& options,
         std::function<bool()> const& isOver, ServerOptions serverOptions) {
  std::string const view = ViewOf(client, options);
  serverOptions.port = options.port;
  Server const server(client, std::move(serverOptions));
  std::cout << server.Address(view) << std::endl;
  if (!std::cout) {
    throw Failure(ExitCode::PartlyDone,
                  std::string("cannot write standard output: ") + std::strerror(errno));
  }
  if (options.opens && !Open(server.AddressForOnce(view))) {
    std::cerr << "no browser could be opened; open the address yourself\n";
  }
  std::chrono::seconds const longest(options.idleSeconds);
  while (!isOver() && (longest.count() == 0 || server.Idle() < longest)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
}

}  // namespace cli::browse
