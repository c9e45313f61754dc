#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "lumo/platform/http/HttpReport.h"
#include "lumo/toolkit/Options.h"

namespace lumo {

/// Code, text and next step of a failure. Not installed.
struct Verdict {
  ErrorCode code = ErrorCode::NotUnderstood;
  std::string text = {};
  Hint hint = {};
};

/// On a call to that URL without a reply.
Verdict VerdictOnNoReply(HttpReport const& report, std::string const& url,
                         ConnectOptions const& options);
/// On a reply of the server that wants a log-on, or another one.
Verdict VerdictOnLogOn(HttpReport const& report, std::string const& url,
                       ConnectOptions const& options);
/// On a reply of a proxy, or of the server through one, that wants a log-on for the proxy.
Verdict VerdictOnProxyLogOn(HttpReport const& report, ConnectOptions const& options);

/// " (LUMO_CA_FILE)", who chose the setting of that key; empty when nobody says.
std::string OriginOf(std::string const& key, ConnectOptions const& options);
/// The proxy of an exchange, and who chose it: "http://proxy:3128 (https_proxy)".
std::string ProxyText(HttpReport const& report, ConnectOptions const& options);
/// A header of the reply; empty without it.
std::string HeaderOf(HttpHeaders const& headers, char const* name);
/// By how much this machine's clock is ahead of the server's; nothing when the reply has no date.
LUMO_API std::optional<std::chrono::seconds> ClockAhead(HttpHeaders const& headers);
/// Clocks may differ by this much where tickets are used.
constexpr std::chrono::seconds kClockTolerance{300};

/// The text on one line without control characters.
std::string OneLine(std::string_view text);
/// Whether the text has that part.
bool Has(std::string_view text, std::string_view part);
/// Whether the text has one of the parts.
template <std::size_t count>
bool HasAny(std::string_view text, std::string_view const (&parts)[count]) {
  for (std::string_view const part : parts) {
    if (Has(text, part)) return true;
  }
  return false;
}

}  // namespace lumo
