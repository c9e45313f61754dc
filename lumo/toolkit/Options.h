#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "lumo/toolkit/Error.h"

namespace lumo {

/// Ends work that is under way, from any thread. Copies share one flag:
///
///     lumo::ReadOptions options;
///     std::thread watch([cancel = options.cancel] { WaitForButton(); cancel.Cancel(); });
///
/// Calls in flight, waits between tries and reads end within half a second with
/// `ErrorCode::Cancelled`.
class CancellationToken {
 public:
  CancellationToken() : m_isCancelled(std::make_shared<std::atomic<bool>>(false)) {}
  /// A signal handler may call it.
  void Cancel() const noexcept { m_isCancelled->store(true, std::memory_order_relaxed); }
  /// Whether anybody has called `Cancel`.
  bool IsCancelled() const noexcept { return m_isCancelled->load(std::memory_order_relaxed); }

 private:
  static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may set the flag");
  std::shared_ptr<std::atomic<bool>> m_isCancelled;
};

/// When and how often a call that reads is repeated; calls that change data never are.
struct RetryPolicy {
  int maxAttempts = 5;  ///< 1 turns it off
  /// The wait before the second try; it doubles from try to try up to `maxBackoff`, and a random
  /// part of it, at least the half, is waited.
  std::chrono::milliseconds initialBackoff{500};
  /// The longest of these waits.
  std::chrono::milliseconds maxBackoff{30'000};
  /// No try begins later than this after the first. A server that asks to be left alone for longer
  /// (Retry-After) gets no further call: the error says the time.
  std::chrono::milliseconds maxElapsed{600'000};
};

/// How far a read has come.
struct Progress {
  std::size_t recordsDone = 0;   ///< handed over
  std::size_t recordsTotal = 0;  ///< 0: nobody knows
  std::uint64_t bytes = 0;       ///< received
  int workers = 0;               ///< calls that may run at once now
  std::size_t chunk = 0;         ///< records in the next call
};

/// One try of a call, as it ended.
struct CallEvent {
  std::string operation = {};             ///< such as "GetTables"
  int attempt = 1;                        ///< counted from 1
  int httpStatus = 0;                     ///< 0 without a reply
  std::optional<ErrorCode> failure = {};  ///< empty on success
  std::uint64_t bytesSent = 0;            ///< body alone, as `bytesReceived`
  std::uint64_t bytesReceived = 0;        ///< of the body
  /// Since the try began, 0 for a phase that did not happen, such as connecting on a kept
  /// connection.
  std::chrono::microseconds nameLookup{0};
  std::chrono::microseconds connect{0};    ///< the connection stands
  std::chrono::microseconds tls{0};        ///< TLS is agreed on
  std::chrono::microseconds firstByte{0};  ///< the reply begins
  std::chrono::microseconds total{0};      ///< the try is over
};

/// Log-on with the current user's Kerberos ticket.
struct Ticket {};
/// Log-on by Basic, Digest or NTLM, whichever the server offers.
struct Password {
  std::string user = {};      ///< without its domain
  std::string password = {};  ///< in plain text
  std::string domain = {};    ///< empty for none
};
/// Log-on as nobody, whatever environment and profile say.
struct Anonymous {};
/// The empty one takes what environment and profile say, and is anonymous without these.
using Credentials = std::variant<std::monostate, Anonymous, Password, Ticket>;

/// How to reach a server. A field that is empty is taken from the environment, then from the
/// profile; see `Client::Connect`.
struct ConnectOptions {
  Credentials credentials = {};      ///< who logs on
  std::string vendorNamespace = {};  ///< base URI of the server's namespaces
  std::string applicationName = {};  ///< shows in the server's log
  /// CA certificates: a file in PEM form, and a folder of such files under their hashed names. When
  /// one is set, only they are trusted; both empty for the system's.
  std::string caFile = {};
  std::string caFolder = {};  ///< see `caFile`
  /// Client certificate in PEM form, and its key, without a passphrase; an empty `keyFile` says
  /// that the key is in the same file.
  std::string certificateFile = {};
  std::string keyFile = {};        ///< see `certificateFile`
  std::string proxy = {};          ///< address; empty for the one that http_proxy and the like name
  std::string proxyUser = {};      ///< the user at the proxy; empty for none
  std::string proxyPassword = {};  ///< of that user
  /// Who chose a setting, under its key in the profile file, for errors to name, such as
  /// {"ca-file", "--ca-file"}. `Client::Connect` adds the variables and profiles that it looks up.
  std::map<std::string, std::string> origins = {};
  /// Longest name resolution; 0 waits for ever.
  std::chrono::milliseconds resolve{10'000};
  /// Longest connection; 0 waits for ever.
  std::chrono::milliseconds connect{60'000};
  /// Longest silence of the server, while it thinks too; 0 waits for ever.
  std::chrono::milliseconds stall{300'000};
  /// Calls at once to this server from the whole process. The process begins with 4, or with fewer
  /// when this is less, goes down when the server is overloaded, and slowly up again.
  int maxConcurrency = 4;
  RetryPolicy retry = {};  ///< how often calls that read are repeated
  /// Ends all calls to the server, those too that no other token reaches.
  CancellationToken cancel = {};
  /// Asked for the password of a user when nothing else gives one, once, by `Client::Connect`.
  std::function<std::string(std::string const& user)> askPassword = {};
  /// Told of each try of each call, on the thread that reads or asks, never under a lock.
  std::function<void(CallEvent const&)> onCall = {};
  /// Asked several times a second while a call is made or waited for on the caller's own thread;
  /// true ends the call with `ErrorCode::Cancelled`. Must not throw. For programs that learn of
  /// signals only where they look for them; reads tell them by `ReadOptions::onProgress`.
  std::function<bool()> isInterrupted = {};
};

/// How many significant digits figures get that are converted into other units. Others are as they
/// are.
enum class ConvertedDigits {
  All,     ///< what the arithmetic gives
  Enough,  ///< three more than the figure has, six at least: an import finds the figure in them
  Shown    ///< as many as it has, four at least, five of a temperature
};

/// How to read the values of records.
struct ReadOptions {
  std::string unitSystem = {};  ///< such as "SI"; empty for the attributes' own units
  std::string currency = {};    ///< empty for the attributes' own
  ConvertedDigits digits = ConvertedDigits::All;  ///< of figures in other units
  /// Records in a call; 0 begins by the number of attributes and adapts to the server.
  std::size_t chunkSize = 0;
  int concurrency = 0;     ///< calls at once; 0: as many as the connection may make
  bool isOrdered = true;   ///< false hands chunks over as they come
  bool withGuids = false;  ///< the GUIDs of records, which some servers only give when asked
  bool withFiles = false;  ///< the bytes of files and pictures, not only their addresses
  /// The whole read ends after this time with `ErrorCode::Timeout`; 0 never.
  std::chrono::milliseconds timeLimit{0};
  CancellationToken cancel = {};  ///< ends this read
  /// Called on the reader's thread, never under a lock, at least at each chunk.
  std::function<void(Progress const&)> onProgress = {};
};

}  // namespace lumo
