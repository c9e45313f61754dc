#include <algorithm>
#include <cstdlib>
#include <utility>

#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/Url.h"
#include "lumo/toolkit/Verdict.h"

namespace lumo {
namespace {

constexpr std::string_view kTicketMethods[] = {"Negotiate"};
constexpr std::string_view kPasswordMethods[] = {"Basic", "Digest", "NTLM"};

/// What the Kerberos library says, as the transport has it: in English.
constexpr std::string_view kNoTicket[] = {"No credentials were supplied",
                                          "No Kerberos credentials available"};
constexpr std::string_view kClockOff[] = {"Clock skew too great", "Ticket not yet valid"};
constexpr std::string_view kExpired[] = {"expired"};
constexpr std::string_view kUnknownServer[] = {"not found in Kerberos database"};
constexpr std::string_view kNoRealm[] = {"Cannot find KDC", "Cannot contact any KDC",
                                         "Cannot determine realm"};
constexpr std::string_view kNtlmLimit[] = {"NTLM: libcurl cannot prove"};

template <std::size_t count>
bool OffersAny(HttpLogOn const& logOn, std::string_view const (&methods)[count]) {
  return std::any_of(logOn.offered.begin(), logOn.offered.end(), [&](std::string const& offer) {
    return std::any_of(std::begin(methods), std::end(methods),
                       [&](std::string_view method) { return EqualIgnoringCase(offer, method); });
  });
}

Hint TicketHint(HttpReport const& report, std::string const& url) {
  std::string const trouble = OneLine(report.logOn.trouble);
  if (!OffersAny(report.logOn, kTicketMethods)) return {HintCode::LogOn, report.logOn.offered};
  if (HasAny(trouble, kNoTicket)) return {HintCode::GetTicket, {trouble}};
  auto const ahead = ClockAhead(report.headers);
  bool const isOff = ahead && std::abs(ahead->count()) > kClockTolerance.count();
  if (isOff) return {HintCode::SetClock, {std::to_string(ahead->count())}};
  if (HasAny(trouble, kClockOff)) return {HintCode::SetClock, {""}};
  if (HasAny(trouble, kExpired)) return {HintCode::GetTicket, {trouble}};
  if (HasAny(trouble, kUnknownServer)) return {HintCode::CheckServerName, {HostOf(url)}};
  if (HasAny(trouble, kNoRealm)) return {HintCode::CheckRealm, {trouble}};
  return {HintCode::CheckTicket, {trouble}};
}

Hint PasswordHint(HttpLogOn const& logOn, Password const& given) {
  if (HasAny(logOn.trouble, kNtlmLimit)) return {HintCode::AvoidNtlm, {given.user}};
  bool const wantsOther = !logOn.offered.empty() && !OffersAny(logOn, kPasswordMethods);
  if (wantsOther) return {HintCode::LogOn, logOn.offered};
  return {HintCode::CheckPassword, {given.user, logOn.used}};
}

}  // namespace

Verdict VerdictOnLogOn(HttpReport const& report, std::string const& url,
                       ConnectOptions const& options) {
  HttpLogOn const& logOn = report.logOn;
  auto const* const password = std::get_if<Password>(&options.credentials);
  bool const isTicket = std::holds_alternative<Ticket>(options.credentials);
  std::string text = "the server wants a log-on";
  Hint hint{HintCode::LogOn, logOn.offered};
  if (password != nullptr) {
    text = "the server refuses the log-on of " + Quoted(password->user) +
           OriginOf("user", options) + (logOn.used.empty() ? "" : " by " + logOn.used);
    hint = PasswordHint(logOn, *password);
  } else if (isTicket) {
    text = "the server refuses the log-on by ticket";
    hint = TicketHint(report, url);
  }
  text += " (status 401)";
  if (!logOn.trouble.empty()) text += ": " + OneLine(logOn.trouble);
  if (!logOn.offered.empty()) text += "; it offers " + Joined(logOn.offered);
  return {ErrorCode::Unauthenticated, std::move(text), std::move(hint)};
}

Verdict VerdictOnProxyLogOn(HttpReport const& report, ConnectOptions const& options) {
  Hint hint{HintCode::LogOnToProxy, {report.proxy}};
  for (std::string const& method : report.logOn.offeredByProxy) hint.arguments.push_back(method);
  std::string text = "the proxy " + ProxyText(report, options) + " refuses the log-on (status 407)";
  if (!report.logOn.offeredByProxy.empty()) {
    text += "; it offers " + Joined(report.logOn.offeredByProxy);
  }
  return {ErrorCode::Unauthenticated, std::move(text), std::move(hint)};
}

}  // namespace lumo
