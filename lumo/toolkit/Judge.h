#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "lumo/session/ServiceLayerResponse.h"
#include "lumo/toolkit/Options.h"

namespace lumo {

/// A try of a call that failed.
struct FailedTry {
  Error error;
  bool hasReply = false;
  /// Whether the server may have acted on the request: it went out, and what came back does not
  /// tell.
  bool isOutcomeOpen = false;
  /// Whether the server has too much to do, or seems to.
  bool IsOverload() const;
  /// How long the server asks to be left alone.
  std::optional<std::chrono::seconds> retryAfter = {};
};

/// What is wrong with a call; nothing for a success. `outcome` may be null.
std::optional<FailedTry> Judge(SmartPtr<ServiceLayerResponse> const& outcome,
                               std::string const& url, ConnectOptions const& options);

/// Reads a Retry-After header: seconds, or a date, which is taken relative to the reply's own date
/// where it has one. Nothing for what is neither.
std::optional<std::chrono::seconds> RetryAfterOf(HttpMessage const& exchange);

}  // namespace lumo
