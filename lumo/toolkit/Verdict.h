#pragma once

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
/// On a reply of a proxy, or of the server through one, that wants a log-on for the proxy.
Verdict VerdictOnProxyLogOn(HttpReport const& report);
/// The text on one line without control characters.
std::string OneLine(std::string_view text);
/// Whether the text has that part.
bool Has(std::string_view text, std::string_view part);

}  // namespace lumo
