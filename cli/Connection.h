#pragma once

#include <exception>
#include <string>

#include <lumo/LumoServiceLayer.h>

#include "cli/Failure.h"

namespace cli {

/// Which server, and how to log on.
struct ServerOptions {
  std::string url;
  std::string namespaceBase;  ///< the vendor's; empty for the one that was built in
  bool useSandbox = false;
  std::string sandboxFile = ":memory:";
  std::string user;  ///< empty for an anonymous log-on
  std::string domain;
  std::string passwordFile;
  bool useTicket = false;
  std::string caFile;
  std::string proxy;
  int timeoutSeconds = 300;  ///< longest silence of the server; 0 waits for ever
  bool isVerbose = false;
};

/// The password from the file, from LUMO_PASSWORD or, on a terminal, from the user, in this order;
/// empty where none is needed. Throws `Failure` when there is none.
std::string PasswordOf(ServerOptions const& options);

/// Throws `UsageFailure` unless the text is an address for http or https.
void CheckUrl(std::string const& url);

/// Throws `UsageFailure` when the text cannot begin a namespace.
void CheckNamespace(std::string const& base);

/// One connection to the server; a thread has one of its own. Every way in which a call can fail
/// ends in a `Failure` that says in one line what is wrong.
class Connection {
 public:
  /// `password` is of no matter without a user.
  Connection(ServerOptions const& options, std::string const& password);
  Connection(Connection const&) = delete;
  Connection& operator=(Connection const&) = delete;

  SmartPtr<BrowseService> Browse() const { return m_services.GetBrowseService(); }
  SmartPtr<SearchService> Search() const { return m_services.GetSearchService(); }
  SmartPtr<DataExportService> Export() const { return m_services.GetDataExportService(); }
  SmartPtr<DataImportService> Import() const { return m_services.GetDataImportService(); }
  SmartPtr<EngineeringDataService> Engineering() const {
    return m_services.GetEngineeringDataService();
  }

  /// Makes a call and gives its response:
  ///
  ///     auto response = connection.Ask<GetTablesResponse>(
  ///         [&](auto* into) { connection.Browse()->GetGetTablesImpl()->RequestTables(request,
  ///         into); });
  template <class Response, class Call>
  SmartPtr<Response> Ask(Call call) {
    SmartPtr<Response> response = Response::CreateOne();
    try {
      call(response.get());
    } catch (std::exception const& error) {  // a value in the reply does not convert
      throw Failure(ExitCode::NotUnderstood,
                    std::string("the reply holds a value that is none: ") + error.what());
    }
    Check(*response->GetServiceLayerResponse());
    return response;
  }

 private:
  /// Shows the times of calls when asked to; what goes wrong is in the outcome.
  class CallLog : public ILogger {
   public:
    explicit CallLog(bool isVerbose) : m_isVerbose(isVerbose) {}
    void Log(int level, std::string const& message) override;

   private:
    bool m_isVerbose;
  };

  void Check(ServiceLayerResponse const& outcome) const;

  std::string m_url;
  CallLog m_log;
  LumoServiceLayerServices m_services;
};

}  // namespace cli
