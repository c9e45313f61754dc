#include "lumo/toolkit/Doctor.h"

#include <curl/curl.h>

#include <algorithm>
#include <ctime>
#include <cwctype>
#include <exception>
#include <utility>

#include "lumo/LumoServiceLayer.h"
#include "lumo/toolkit/Connection.h"
#include "lumo/toolkit/Judge.h"
#include "lumo/toolkit/LookAtServer.h"
#include "lumo/toolkit/ServerNamespace.h"
#include "lumo/toolkit/Settings.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/Url.h"
#include "lumo/toolkit/Verdict.h"

namespace lumo {
namespace {

using State = Finding::State;
using std::chrono::milliseconds;

constexpr milliseconds kLongestWait{30'000};
constexpr std::time_t kSecondsOfADay = 86400;
constexpr int kDaysToRenew = 14;
/// Clocks never agree to the second.
constexpr std::chrono::seconds kSameTime{5};

/// No limit, or a long one, would keep a person waiting.
void Shorten(milliseconds& limit) {
  if (limit.count() <= 0 || limit > kLongestWait) limit = kLongestWait;
}

std::string Time(double seconds) {
  return std::to_string(static_cast<long>(seconds * 1000)) + " ms";
}

bool IsHttps(std::string const& url) { return ServerOf(url).compare(0, 6, "https:") == 0; }

/// How a call ended.
struct Answer {
  std::optional<FailedTry> failed;
  SmartPtr<HttpMessage> exchange;  // null only when nothing could be sent

  HttpReport const& Report() const { return *exchange->GetReport(); }
  bool IsReply() const { return exchange && exchange->GetResponseBuffer(); }
};

/// The stage at which a first call has failed.
std::string StageOf(Error const& error, Answer const& answer) {
  switch (error.Code()) {
    case ErrorCode::InvalidArgument: return "settings";
    case ErrorCode::NameResolution: return "name";
    case ErrorCode::Proxy: return "proxy";
    case ErrorCode::Tls: return "TLS";
    case ErrorCode::Connection: return "connection";
    case ErrorCode::Timeout:
      if (answer.IsReply() || answer.Report().phase >= eHttpPhase_Sending) return "Browse";
      return answer.Report().phase == eHttpPhase_Connecting ? "connection" : "name";
    case ErrorCode::PermissionDenied: return "log-on";
    case ErrorCode::Unauthenticated: return error.HttpStatus() == 401 ? "log-on" : "proxy";
    default: break;
  }
  return error.Hint().code == HintCode::CheckNamespace ? "namespace" : "Browse";
}

class Doctor {
 public:
  explicit Doctor(std::function<void(Finding const&)> const& onFinding) : m_onFinding(onFinding) {}

  Diagnosis Run(std::string const& server, ConnectOptions const& options) {
    if (!TakeSettings(server, options)) return std::move(m_diagnosis);
    m_services =
        MakeServices(Url(), m_options, [cancel = m_options.cancel](std::uint64_t, std::uint64_t) {
          return !cancel.IsCancelled();
        });
    Answer const first = Ask<GetDatabasesResponse>([this](auto* into) {
      m_services->GetBrowseService()->GetGetDatabaseImpl()->GetDatabases(into);
    });
    if (TellWay(first) && TellLogOn(first) && TellNamespace(first) && TellBrowse(first)) {
      TellServices();
    }
    return std::move(m_diagnosis);
  }

 private:
  std::string const& Url() const { return m_diagnosis.url; }

  void Add(Finding finding) {
    if (m_onFinding) m_onFinding(finding);
    m_diagnosis.findings.push_back(std::move(finding));
  }
  void AddFine(std::string const& stage, std::string const& text) {
    Add({stage, State::Fine, text, {}});
  }
  /// Ends the way here; false, so that callers stop.
  bool AddFault(std::string const& stage, Error const& error, std::string const& more = "") {
    m_diagnosis.fault = error;
    Add({stage, State::Fault, error.what() + more, error.Hint()});
    return false;
  }

  template <class Response, class Call>
  Answer Ask(Call const& call) {
    auto const response = Response::CreateOne();
    try {
      call(response.get());
    } catch (std::exception const&) {  // a value did not convert, as the outcome then says
    }
    auto const outcome = response->GetServiceLayerResponse();
    Answer answer{Judge(outcome, Url(), m_options), outcome ? outcome->GetExchange() : nullptr};
    if (m_options.cancel.IsCancelled()) throw Error(ErrorCode::Cancelled, "cancelled");
    return answer;
  }

  bool TakeSettings(std::string const& server, ConnectOptions const& options) {
    try {
      ServerSettings settings = Resolve(server, options);
      m_options = std::move(settings.options);
      m_diagnosis.url = std::move(settings.url);
    } catch (Error const& error) {
      return AddFault("settings", error);
    }
    Shorten(m_options.resolve);
    Shorten(m_options.connect);
    Shorten(m_options.stall);
    std::string text = Url() + OriginOf("url", m_options) + ", " + LogOnText();
    AddSetting(text, "trusting", m_options.caFile, "ca-file");
    AddSetting(text, "trusting those in", m_options.caFolder, "ca-folder");
    AddSetting(text, "with the certificate", m_options.certificateFile, "certificate-file");
    AddSetting(text, "with the key", m_options.keyFile, "key-file");
    AddFine("settings", text);
    return true;
  }

  void AddSetting(std::string& text, char const* what, std::string const& value, char const* key) {
    if (value.empty()) return;
    text += std::string(", ") + what + " " + value + OriginOf(key, m_options);
  }

  std::string LogOnText() const {
    if (std::holds_alternative<Ticket>(m_options.credentials)) {
      return "with the user's ticket" + OriginOf("log-on", m_options);
    }
    auto const* const password = std::get_if<Password>(&m_options.credentials);
    if (password == nullptr) return "without a log-on";
    return "as " + password->user + OriginOf("user", m_options);
  }

  /// Name, proxy, connection, TLS and clock; false when the way ends there.
  bool TellWay(Answer const& first) {
    std::string const stage = first.failed ? StageOf(first.failed->error, first) : "";
    if (!first.exchange || stage == "settings") return AddFault("settings", first.failed->error);
    HttpReport const& report = first.Report();
    if (stage == "name") return AddFault(stage, first.failed->error);
    bool const isProxied = !report.proxy.empty() || !report.proxyVariable.empty();
    if (!isProxied) {
      AddFine("name", HostOf(Url()) + " found in " + Time(report.timings.nameLookup));
    } else {
      if (stage == "proxy") return AddFault(stage, first.failed->error);
      AddFine("proxy", ProxyText(report, m_options) + ", which finds " + HostOf(Url()));
    }
    if (stage == "connection") return AddFault(stage, first.failed->error);
    ServerLook const look = LookAtServer(Url(), m_options, report);
    AddFine("connection", std::string(isProxied ? "through the proxy" : "to " + look.address) +
                              " in " + Time(report.timings.connect));
    std::string const certificate = CertificateText(look);
    if (stage == "TLS") {
      return AddFault(stage, first.failed->error, certificate.empty() ? "" : "; " + certificate);
    }
    if (IsHttps(Url())) TellCertificate(look, certificate);
    if (first.IsReply()) TellClock(report);
    return true;
  }

  static std::string CertificateText(ServerLook const& look) {
    if (look.subject.empty()) return {};
    return "the certificate is " + Quoted(look.subject) + " by " + Quoted(look.issuer) + ", for " +
           (look.names.empty() ? "no name" : look.names) + ", until " + look.until;
  }

  void TellCertificate(ServerLook const& look, std::string const& text) {
    std::time_t const end = curl_getdate(look.until.c_str(), nullptr);
    bool const endsSoon = end != -1 && end - std::time(nullptr) < kDaysToRenew * kSecondsOfADay;
    if (!endsSoon) return AddFine("TLS", text);
    Add({"TLS", State::Doubtful, text, {HintCode::RenewCertificate, {HostOf(Url())}}});
  }

  void TellClock(HttpReport const& report) {
    auto const ahead = ClockAhead(report.headers);
    if (!ahead) return AddFine("clock", "the server does not tell its time");
    std::chrono::seconds const off(std::abs(ahead->count()));
    if (off <= kSameTime) return AddFine("clock", "agrees with the server's");
    std::string const text = "this machine's is " + std::to_string(off.count()) + " s " +
                             (ahead->count() > 0 ? "fast" : "slow") + " beside the server's";
    if (off <= kClockTolerance) return AddFine("clock", text);
    Add({"clock", State::Doubtful, text, {HintCode::SetClock, {std::to_string(ahead->count())}}});
  }

  bool TellLogOn(Answer const& first) {
    if (first.failed && StageOf(first.failed->error, first) == "log-on") {
      return AddFault("log-on", first.failed->error);
    }
    if (!first.IsReply()) return true;
    HttpLogOn const& logOn = first.Report().logOn;
    // Without a ticket nothing was sent, and nobody had asked for it.
    bool const isTrial = !logOn.trouble.empty() && logOn.offered.empty();
    if (logOn.used.empty() || isTrial) {
      AddFine("log-on", "the server asks for none");
      return true;
    }
    std::string text = LogOnText() + ", by " + logOn.used;
    if (!logOn.offered.empty()) text += " (offered: " + Joined(logOn.offered) + ")";
    bool const isBare = logOn.used == "Basic" && !IsHttps(Url());
    if (!isBare) {
      AddFine("log-on", text);
      return true;
    }
    Add({"log-on",
         State::Doubtful,
         text + "; over http everybody on the way can read the password",
         {HintCode::UseHttps, {Url()}}});
    return true;
  }

  /// Where the server does not know what it is asked, its description tells why.
  bool TellNamespace(Answer const& first) {
    std::string const mine = m_services->GetSession()->GetNamespaceBase();
    std::string const version = m_services->GetSession()->GetInterfaceVersion();
    bool const isUnknown =
        first.failed && first.failed->error.Hint().code == HintCode::CheckNamespace;
    if (!isUnknown) {
      if (first.failed) return true;  // nobody knows
      AddFine("namespace", mine);
      AddFine("version", version);
      return true;
    }
    auto const message = HttpMessage::CreateOne();
    m_services->GetSession()->HttpClientPtr()->SendRequest(L"/Browse.svc?wsdl", eHttpVerb_Get,
                                                           message);
    auto const reply = message->GetResponseBuffer();
    auto const own = reply ? ServerNamespaceIn(reply->GetBytes()) : std::nullopt;
    if (own && own->base != mine) {
      return AddNamespaceFault("namespace", first, "; its namespaces begin with " + own->base,
                               {HintCode::UseNamespace, {own->base}});
    }
    if (own && own->version != version) {
      AddFine("namespace", mine);
      return AddNamespaceFault("version", first, "; it speaks version " + own->version,
                               {HintCode::CheckVersion, {own->version}});
    }
    return AddNamespaceFault("namespace", first, "; asked for in " + mine,
                             {HintCode::CheckNamespace, {mine}});
  }

  bool AddNamespaceFault(char const* stage, Answer const& first, std::string const& more,
                         Hint hint) {
    Error const& error = first.failed->error;
    ErrorDetails details = error.Details();
    details.hint = std::move(hint);
    return AddFault(stage, Error(error.Code(), error.what() + more, std::move(details)));
  }

  bool TellBrowse(Answer const& first) {
    if (first.failed) return AddFault("Browse", first.failed->error);
    AddFine("Browse", "answers in " + Time(first.Report().timings.total));
    return true;
  }

  /// A service that has a fault to tell of an empty request is there.
  bool TellService(char const* name, Answer const& answer) {
    bool const isThere = !answer.failed || !answer.failed->error.FaultCode().empty();
    if (!isThere) return AddFault(name, answer.failed->error);
    AddFine(name, "answers in " + Time(answer.Report().timings.total));
    return true;
  }

  void TellServices() {
    LumoServiceLayerServices& services = *m_services;
    TellService("Search", Ask<SimpleTextSearchResponse>([&](auto* into) {
                  services.GetSearchService()->GetSimpleTextSearchImpl()->Search(
                      SimpleTextSearch::CreateOne(), into);
                })) &&
        TellService("DataExport", Ask<GetRecordAttributesByRefResponse>([&](auto* into) {
                      services.GetDataExportService()
                          ->GetRecordAttributesByRefImplPtr()
                          ->RequestRecordAttributesByRef(
                              GetRecordAttributesByRefRequest::CreateOne(), into);
                    })) &&
        TellService(
            "DataImport", Ask<GetUploadAddressesResponse>([&](auto* into) {
              services.GetDataImportService()->GetUploadAddressesImplPtr()->GetUploadAddresses(
                  GetUploadAddressesRequest::CreateOne(), into);
            })) &&
        TellService("EngineeringData", Ask<GetAvailableExportersResponse>([&](auto* into) {
                      services.GetEngineeringDataService()
                          ->GetGetAvailableExportersImplPtr()
                          ->GetAvailableExporters(GetAvailableExportersRequest::CreateOne(), into);
                    }));
  }

  std::function<void(Finding const&)> const& m_onFinding;
  ConnectOptions m_options;
  SmartPtr<LumoServiceLayerServices> m_services;
  Diagnosis m_diagnosis;
};

}  // namespace

char const* NameOf(Finding::State state) {
  switch (state) {
    case State::Fine: return "Fine";
    case State::Doubtful: return "Doubtful";
    case State::Fault: break;
  }
  return "Fault";
}

Diagnosis Diagnose(std::string const& server, ConnectOptions const& options,
                   std::function<void(Finding const&)> const& onFinding) {
  return Doctor(onFinding).Run(server, options);
}

}  // namespace lumo
