#include <curl/curl.h>
#include <nlohmann/json.hpp>

#include <functional>
#include <iostream>
#include <memory>
#include <string>

#include "cli/Interrupt.h"
#include "cli/Options.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Pool.h"

namespace cli {
namespace {

struct FreeEasy {
  void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
using Easy = std::unique_ptr<CURL, FreeEasy>;

/// Tells of stages, each on a line of its own.
class Report {
 public:
  Report(OutputOptions const& options, Sink& sink) : m_out(options, sink, {"stage", "answer"}) {}
  void Add(std::string const& stage, std::string const& answer) { m_out.Add({stage, answer}); }
  void Finish() { m_out.End(); }

 private:
  TableWriter m_out;
};

std::string Milliseconds(CURL* easy, CURLINFO what) {
  curl_off_t microseconds = 0;
  curl_easy_getinfo(easy, what, &microseconds);
  return lumo::TextOf(static_cast<double>(microseconds) / 1000, 6) + " ms";
}

/// Connects and ends the connection: name, connection and TLS.
void ProbeConnection(lumo::ServerSettings const& server, Report& report) {
  lumo::ConnectOptions const& options = server.options;
  Easy const easy(curl_easy_init());
  char error[CURL_ERROR_SIZE] = "";
  curl_easy_setopt(easy.get(), CURLOPT_URL, server.url.c_str());
  curl_easy_setopt(easy.get(), CURLOPT_CONNECT_ONLY, 1L);
  curl_easy_setopt(easy.get(), CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy.get(), CURLOPT_ERRORBUFFER, error);
  curl_easy_setopt(easy.get(), CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy.get(), CURLOPT_CONNECTTIMEOUT, 20L);
  if (!options.caFile.empty()) curl_easy_setopt(easy.get(), CURLOPT_CAINFO, options.caFile.c_str());
  if (!options.proxy.empty()) curl_easy_setopt(easy.get(), CURLOPT_PROXY, options.proxy.c_str());
  curl_easy_setopt(easy.get(), CURLOPT_NOPROGRESS, 0L);
  curl_xferinfo_callback const stop = [](void*, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return Interrupts().IsCancelled() ? 1 : 0;
  };
  curl_easy_setopt(easy.get(), CURLOPT_XFERINFOFUNCTION, stop);
  CURLcode const code = curl_easy_perform(easy.get());
  StopWhenInterrupted();
  std::string const why = *error != '\0' ? error : curl_easy_strerror(code);
  if (code == CURLE_URL_MALFORMAT || code == CURLE_UNSUPPORTED_PROTOCOL) Refuse(why);
  if (code == CURLE_COULDNT_RESOLVE_HOST || code == CURLE_COULDNT_RESOLVE_PROXY) {
    report.Add("name", "fails: " + why);
    throw Failure(ExitCode::Transport, why);
  }
  report.Add("name", "resolved in " + Milliseconds(easy.get(), CURLINFO_NAMELOOKUP_TIME_T));
  curl_off_t connected = 0;
  curl_easy_getinfo(easy.get(), CURLINFO_CONNECT_TIME_T, &connected);
  if (code != CURLE_OK && connected == 0) {
    report.Add("connection", "fails: " + why);
    throw Failure(ExitCode::Transport, why);
  }
  char* address = nullptr;
  curl_easy_getinfo(easy.get(), CURLINFO_PRIMARY_IP, &address);
  report.Add("connection", std::string(address == nullptr ? "" : address) + " after " +
                               Milliseconds(easy.get(), CURLINFO_CONNECT_TIME_T));
  bool const hasTls = server.url.compare(0, 6, "https:") == 0;
  if (code != CURLE_OK) {
    report.Add("TLS", "fails: " + why);
    throw Failure(ExitCode::Transport, why);
  }
  report.Add("TLS", hasTls ? "certificate verified after " +
                                 Milliseconds(easy.get(), CURLINFO_APPCONNECT_TIME_T)
                           : "none");
}

/// A service is there when it answers, be it with a fault.
void ProbeService(Report& report, std::string const& name, std::function<void()> const& call) {
  try {
    call();
    report.Add(name, "answers");
  } catch (lumo::Error const& failure) {
    bool const isThere = !failure.FaultCode().empty();
    report.Add(name, (isThere ? "answers: " : "fails: ") + std::string(failure.what()));
    if (!isThere) throw;
  }
}

void ProbeServices(lumo::Connection& connection, Report& report) {
  ProbeService(report, "Browse", [&] {
    connection.Ask<GetDatabasesResponse>(
        [&](auto* into) { connection.Browse()->GetGetDatabaseImpl()->GetDatabases(into); });
  });
  ProbeService(report, "Search", [&] {
    connection.Ask<SimpleTextSearchResponse>([&](auto* into) {
      connection.Search()->GetSimpleTextSearchImpl()->Search(SimpleTextSearch::CreateOne(), into);
    });
  });
  ProbeService(report, "DataExport", [&] {
    connection.Ask<GetRecordAttributesByRefResponse>([&](auto* into) {
      connection.Export()->GetRecordAttributesByRefImplPtr()->RequestRecordAttributesByRef(
          GetRecordAttributesByRefRequest::CreateOne(), into);
    });
  });
  ProbeService(report, "DataImport", [&] {
    connection.Ask<GetUploadAddressesResponse>([&](auto* into) {
      connection.Import()->GetUploadAddressesImplPtr()->GetUploadAddresses(
          GetUploadAddressesRequest::CreateOne(), into);
    });
  });
  ProbeService(report, "EngineeringData", [&] {
    connection.Ask<GetAvailableExportersResponse>([&](auto* into) {
      connection.Engineering()->GetGetAvailableExportersImplPtr()->GetAvailableExporters(
          GetAvailableExportersRequest::CreateOne(), into);
    });
  });
}

void Probe(Context& context) {
  lumo::Client const client = context.Connect();
  auto const connection = client.Pool()->Lend();
  lumo::ServerSettings const& server = client.Pool()->Settings();
  Sink sink(context.output.file);
  Report report(context.output, sink);
  try {
    ProbeConnection(server, report);
    auto const* const password = std::get_if<lumo::Password>(&server.options.credentials);
    try {
      client.Databases();
      report.Add("log-on", password == nullptr ? "accepted" : "accepted as " + password->user);
    } catch (lumo::Error const& error) {
      report.Add("log-on", "fails: " + TextOf(error));
      throw;
    }
    ProbeServices(*connection, report);
  } catch (std::exception const&) {
    report.Finish();
    throw;
  }
  report.Finish();
  sink.Finish();
}

}  // namespace

void AddProbe(CommandLine& line) {
  CLI::App& probe = line.Add("probe", "say what the server answers at each stage",
                             "  $ lumo probe --url https://server/service_layer --user me", Probe);
  AddOutput(probe, line.Shared().output);
}

}  // namespace cli
