#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "lumo/LumoServiceLayer.h"
#include "lumo/toolkit/Options.h"

namespace lumo {

/// What the calls of a connection belong to.
struct CallScope {
  using Time = std::chrono::steady_clock::time_point;

  CancellationToken cancel = {};             ///< of who wants the work
  CancellationToken stop = {};               ///< of who does it, when nobody wants it any more
  CancellationToken server = {};             ///< of all calls to the server, set by the connection
  std::function<bool()> isInterrupted = {};  ///< of `ConnectOptions`
  std::optional<Time> deadline = {};
  /// No try begins after this; the retry policy alone decides when it is empty.
  std::optional<Time> lastTry = {};
  /// Whether a call that timed out is repeated; false for one that is to be made smaller first.
  bool repeatsTimeouts = true;
  /// Told of each try, on the thread that makes the call.
  std::function<void(CallEvent const&)> onCall = {};
  /// Bytes of replies, counted as they come.
  std::shared_ptr<std::atomic<std::uint64_t>> received = {};

  /// Throws `Error` (Cancelled, Timeout) when the work is over.
  void ThrowWhenOver(std::string const& operation = "") const;
  bool IsOver() const;
  /// By one of the tokens, or by the caller's program.
  bool HasEnded() const;
};

/// Base of the vendor's namespaces where nobody names another one.
LUMO_API std::string BuiltInNamespace();
/// The exact library for a server. `progress` is the transport's.
LUMO_API SmartPtr<LumoServiceLayerServices> MakeServices(
    std::string const& url, ConnectOptions const& options,
    std::function<bool(std::uint64_t sent, std::uint64_t received)> progress);

/// One connection to a server, used by one thread at a time. Every way in which a call can fail
/// ends in an `Error`. Not installed: programs have `Client`.
class LUMO_API Connection {
 public:
  Connection(std::string const& url, ConnectOptions const& options);
  ~Connection();
  Connection(Connection const&) = delete;
  Connection& operator=(Connection const&) = delete;

  SmartPtr<BrowseService> Browse() const;
  SmartPtr<SearchService> Search() const;
  SmartPtr<DataExportService> Export() const;
  SmartPtr<DataImportService> Import() const;
  SmartPtr<EngineeringDataService> Engineering() const;
  LumoServiceLayerServices& Services() const;

  std::string const& Url() const;
  ConnectOptions const& Options() const;
  /// For the calls from now on; may be changed between them.
  CallScope& Scope();

  /// Makes a call that reads, again where the retry policy says so, and gives its response:
  ///
  ///     auto response = connection.Ask<GetTablesResponse>([&](auto* into) {
  ///       connection.Browse()->GetGetTablesImpl()->RequestTables(request, into);
  ///     });
  template <class Response, class Call>
  SmartPtr<Response> Ask(Call const& call) {
    return Make<Response>(Kind::Read, call);
  }
  /// Makes a call that changes data, once. Throws `OutcomeUnknown` when it went out and its reply
  /// was lost.
  template <class Response, class Call>
  SmartPtr<Response> Write(Call const& call) {
    return Make<Response>(Kind::Write, call);
  }

 private:
  enum class Kind { Read, Write };
  /// Makes the call once.
  using Once = std::function<SmartPtr<ServiceLayerResponse>()>;

  template <class Response, class Call>
  SmartPtr<Response> Make(Kind kind, Call const& call) {
    SmartPtr<Response> response;
    Run(kind, [&] {
      response = Response::CreateOne();
      try {
        call(response.get());
      } catch (std::exception const&) {  // a value did not convert, as the outcome then says
        auto const outcome = response->GetServiceLayerResponse();
        if (!outcome || outcome->GetOutcome() != CallOutcomes::NotUnderstood) throw;
      }
      return response->GetServiceLayerResponse();
    });
    return response;
  }

  void Run(Kind kind, Once const& once);

  struct Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace lumo
