#include "lumo/toolkit/Error.h"

#include <utility>

namespace lumo {

char const* NameOf(ErrorCode code) {
  switch (code) {
    case ErrorCode::InvalidArgument: return "InvalidArgument";
    case ErrorCode::NotFound: return "NotFound";
    case ErrorCode::Ambiguous: return "Ambiguous";
    case ErrorCode::NameResolution: return "NameResolution";
    case ErrorCode::Connection: return "Connection";
    case ErrorCode::Tls: return "Tls";
    case ErrorCode::Timeout: return "Timeout";
    case ErrorCode::Proxy: return "Proxy";
    case ErrorCode::Unauthenticated: return "Unauthenticated";
    case ErrorCode::PermissionDenied: return "PermissionDenied";
    case ErrorCode::RateLimited: return "RateLimited";
    case ErrorCode::Unavailable: return "Unavailable";
    case ErrorCode::ServerFault: return "ServerFault";
    case ErrorCode::NotUnderstood: return "NotUnderstood";
    case ErrorCode::OutcomeUnknown: return "OutcomeUnknown";
    case ErrorCode::Cancelled: break;
  }
  return "Cancelled";
}

bool IsRetryable(ErrorCode code) {
  switch (code) {
    case ErrorCode::NameResolution:
    case ErrorCode::Connection:
    case ErrorCode::Timeout:
    case ErrorCode::RateLimited:
    case ErrorCode::Unavailable: return true;
    default: return false;
  }
}

namespace {

ErrorDetails WithHint(Hint hint) {
  ErrorDetails details;
  details.hint = std::move(hint);
  return details;
}

}  // namespace

Error::Error(ErrorCode code, std::string const& text, ErrorDetails details)
    : std::runtime_error(text),
      m_code(code),
      m_details(std::make_shared<ErrorDetails const>(std::move(details))) {}

Error::Error(ErrorCode code, std::string const& text, lumo::Hint hint)
    : Error(code, text, WithHint(std::move(hint))) {}

Error::~Error() = default;

}  // namespace lumo
