#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "lumo/LumoServiceLayer.h"
#include "lumo/toolkit/Options.h"

namespace lumo {

/// What ends the calls of a connection before their time.
struct CallScope {
  CancellationToken cancel = {};
  std::optional<std::chrono::steady_clock::time_point> deadline = {};
};

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

  /// For the calls from now on.
  void SetScope(CallScope const& scope);

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
  /// Makes the call once; `badValue` receives what a value in the reply had that did not convert.
  using Once = std::function<SmartPtr<ServiceLayerResponse>(std::string& badValue)>;

  template <class Response, class Call>
  SmartPtr<Response> Make(Kind kind, Call const& call) {
    SmartPtr<Response> response;
    Run(kind, [&](std::string& badValue) {
      response = Response::CreateOne();
      try {
        call(response.get());
      } catch (std::bad_alloc const&) {
        throw;
      } catch (std::exception const& error) {
        badValue = error.what();
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
