#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lumo/toolkit/Options.h"

namespace lumo {

/// What was found of one stage of the way to a server. No password, ticket or token is in it.
struct Finding {
  /// How it looks.
  enum class State {
    Fine,
    Doubtful,  ///< works now, and is worth a look: a certificate that soon ends, a clock that is
               ///< off
    Fault      ///< here the way ends
  };

  /// "settings", "name", "proxy", "connection", "TLS", "clock", "log-on", "namespace", "version",
  /// or the name of a service, such as "Browse".
  std::string stage = {};
  State state = State::Fine;  ///< how it looks
  std::string text = {};      ///< what was found, in one line
  /// What to do next, where the state is not `Fine`.
  Hint hint = {};
};

/// What is known of the way to a server.
struct Diagnosis {
  std::string url = {};  ///< empty when the settings name none
  /// Stage by stage; those behind a fault are left out.
  std::vector<Finding> findings = {};
  /// The first fault, as a call would throw it; nothing when all is fine.
  std::optional<Error> fault = {};
};

/// The state's name, such as "Doubtful".
LUMO_API char const* NameOf(Finding::State state);

/// Goes through everything between a program and a service layer, and tells what it finds: whether
/// the server's name has an address, through which proxy the way goes, whose certificate the server
/// has and until when, the difference of the clocks, the methods of log-on and the one used, the
/// vendor's namespaces, and each of the five services. It changes nothing on the server.
///
/// Server and options are those of `Client::Connect`; no wait lasts longer than half a minute.
/// `onFinding` hears of each finding at once, on the caller's thread. Throws `Error` (Cancelled)
/// alone.
LUMO_API Diagnosis Diagnose(std::string const& server = "", ConnectOptions const& options = {},
                            std::function<void(Finding const&)> const& onFinding = {});

}  // namespace lumo
