#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumo/platform/core/Export.h"

namespace lumo {

/// What kind of failure an `Error` is; programs decide by it.
enum class ErrorCode {
  InvalidArgument,   ///< what was asked for makes no sense; nothing was sent
  NotFound,          ///< no such database, table, attribute, folder or record
  Ambiguous,         ///< several things have that name
  NameResolution,    ///< the server's name has no address
  Connection,        ///< refused, reset or cut short: no complete reply
  Tls,               ///< certificates or the handshake
  Timeout,           ///< a phase of a call, or the whole work, took too long
  Proxy,             ///< the way to the server through a proxy fails
  Unauthenticated,   ///< the log-on is refused (401, 407)
  PermissionDenied,  ///< logged on, and not allowed (403)
  RateLimited,       ///< too many calls (429)
  Unavailable,       ///< the server is there and cannot serve now (502, 503, 504)
  ServerFault,       ///< the server reports a fault, or another status of failure
  NotUnderstood,     ///< the reply is no answer of a service layer, or holds a value that is none
  OutcomeUnknown,    ///< a change was sent and its reply was lost: it may have happened or not
  Cancelled          ///< by a `CancellationToken`
};

/// The code's name as it stands in the source, such as "RateLimited".
LUMO_API char const* NameOf(ErrorCode code);
/// Whether a read that failed so may succeed when it is repeated.
LUMO_API bool IsRetryable(ErrorCode code);

/// What to do next, as a code with arguments: programs word it in their own terms, since what is
/// `--user` for one is `user=` for another.
enum class HintCode {
  None,
  DidYouMean,           ///< a name that is alike
  OneOf,                ///< the names or identities that there are
  CheckName,            ///< the host whose name has no address
  CheckAddress,         ///< the URL that does not answer as a service layer
  UseHttps,             ///< the URL that wants https
  UseHttp,              ///< the URL that wants http
  FollowRedirect,       ///< where the server sends its callers
  TrustAuthority,       ///< the CA file or folder in use, empty for the system's; who chose it
  CheckFile,            ///< the file that cannot be read or used; who chose it
  RenewCertificate,     ///< the host whose certificate is out of date
  CheckHost,            ///< the host that the certificate does not name
  GiveCertificate,      ///< the client certificate that the server refuses, empty for none
  CheckConnection,      ///< the URL where nothing answers
  CheckProxy,           ///< the proxy, and the variable or option that names it
  LogOnToProxy,         ///< the proxy that refuses the log-on, then the methods that it offers
  AskProxy,             ///< the proxy that does not let calls through, and the host they are for
  LogOn,                ///< a user or ticket is needed; the methods that the server offers
  GivePassword,         ///< the user whose password nobody gave
  GiveServer,           ///< no server is named
  CheckPassword,        ///< the user whose log-on is refused, and by which method
  AvoidNtlm,            ///< the user whose password has characters with which NTLM does not work
  GetTicket,            ///< there is no ticket, or its time is over; what the ticket's library says
  CheckServerName,      ///< the host that the tickets' realm does not know
  CheckRealm,           ///< the realm's servers are not found; what the ticket's library says
  SetClock,             ///< by how many seconds this machine's clock is fast, empty when unknown
  CheckTicket,          ///< what the ticket's library says
  AskForRights,         ///< the user, empty for none
  WaitSeconds,          ///< how long the server wants to be left alone, in seconds
  TryLater,             ///< the server has too much to do, or is not running behind its gate
  WaitLonger,           ///< the limit in seconds within which the server said nothing
  SendLess,             ///< the request is too large for the server
  CheckNamespace,       ///< the base of namespaces that the server does not know
  UseNamespace,         ///< the base of the server's own namespaces
  CheckVersion,         ///< the interface version that the server speaks
  LookBeforeRepeating,  ///< see whether the change has happened
  NameEach              ///< the names in a text that has several, with commas between them
};

/// What to do next, for a program to put in words of its own.
struct Hint {
  HintCode code = HintCode::None;           ///< the step
  std::vector<std::string> arguments = {};  ///< what the step names, such as a file or a setting
};

/// One try of a call.
struct Attempt {
  int number = 1;                          ///< counted from 1
  ErrorCode code = ErrorCode::Connection;  ///< what kind of failure it was
  std::string text = {};                   ///< what went wrong, in one line
  std::chrono::milliseconds after{0};      ///< since the call's first try began
};

/// What is known of a failure beside its code and text.
struct ErrorDetails {
  /// See the functions of `Error`:
  std::string operation = {};
  int httpStatus = 0;
  std::string faultCode = {};
  std::string faultDetail = {};
  std::string transportText = {};
  std::vector<std::string> offeredLogOns = {};
  std::string bodyStart = {};
  Hint hint = {};
  std::vector<Attempt> attempts = {};
  std::size_t recordsDone = 0;
};

/// The one exception of the toolkit. `what()` is one line that says what went wrong:
///
///     try {
///       for (lumo::Record const& record : table.All().Read({"Density"})) Use(record);
///     } catch (lumo::Error const& error) {
///       std::cerr << error.what() << '\n';
///       return error.IsRetryable() ? 75 : 1;
///     }
class LUMO_API Error : public std::runtime_error {
 public:
  /// What went wrong, in one line, with what is known of it.
  Error(ErrorCode code, std::string const& text, ErrorDetails details = {});
  Error(ErrorCode code, std::string const& text, Hint hint);
  Error(Error const&) = default;
  Error& operator=(Error const&) = default;
  ~Error() override;

  /// What kind of failure it is.
  ErrorCode Code() const { return m_code; }
  /// Such as "GetTables"; empty when no call was made.
  std::string const& Operation() const { return m_details->operation; }
  /// Status of the reply; 0 without one.
  int HttpStatus() const { return m_details->httpStatus; }
  /// Code and detail of a SOAP fault, the detail as XML text.
  std::string const& FaultCode() const { return m_details->faultCode; }
  /// See `FaultCode`.
  std::string const& FaultDetail() const { return m_details->faultDetail; }
  /// Why no reply came, in the words of the libraries below.
  std::string const& TransportText() const { return m_details->transportText; }
  /// The methods that a server offers where it wants a log-on, as it writes them ("Negotiate").
  std::vector<std::string> const& OfferedLogOns() const { return m_details->offeredLogOns; }
  /// The first 2 KB of a reply that is not a service layer's.
  std::string const& BodyStart() const { return m_details->bodyStart; }
  /// What to do next.
  lumo::Hint const& Hint() const { return m_details->hint; }
  /// All tries of a call that was repeated, this last one too; empty for a read made once. A change
  /// whose outcome is unknown has its one try, whose code says how the reply was lost.
  std::vector<Attempt> const& Attempts() const { return m_details->attempts; }
  /// How many records a read had handed over before it failed.
  std::size_t RecordsDone() const { return m_details->recordsDone; }
  /// Whether the same call may succeed later.
  bool IsRetryable() const { return lumo::IsRetryable(m_code); }
  /// All of it at once.
  ErrorDetails const& Details() const { return *m_details; }

 private:
  ErrorCode m_code;
  std::shared_ptr<ErrorDetails const> m_details;  // so that copies cannot throw
};

}  // namespace lumo
