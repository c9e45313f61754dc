#pragma once

#include <string>

#include "lumo/toolkit/Options.h"

/// Where a server is and how to log on, from the environment and the profile file. Not installed.
namespace lumo {

/// A server with nothing left open.
struct ServerSettings {
  std::string url;
  ConnectOptions options;
};

/// Fills in what is empty: first from the environment, then from the profile, as `Client::Connect`
/// says. Throws `Error` (InvalidArgument).
LUMO_API ServerSettings Resolve(std::string const& server, ConnectOptions const& options);

/// The profile file: $XDG_CONFIG_HOME/lumo/servers.ini, or ~/.config/lumo/servers.ini.
LUMO_API std::string ProfileFile();

/// A password that stands in a file. Throws `Error` (InvalidArgument) when there is none.
LUMO_API std::string FirstLineOf(std::string const& path);

}  // namespace lumo
