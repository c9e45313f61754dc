#include "lumo/toolkit/Connection.h"

#include <algorithm>
#include <climits>
#include <mutex>
#include <utility>
#include <variant>

#include "lumo/toolkit/Gate.h"
#include "lumo/toolkit/Judge.h"
#include "lumo/toolkit/Tries.h"
#include "lumo/toolkit/Url.h"

namespace lumo {
namespace {

using Clock = std::chrono::steady_clock;

/// The exact library is started up once, by whoever connects first.
void StartUp() {
  static std::once_flag once;
  std::call_once(once, [] { kpxtkLumoServiceLayer::Initialize(); });
}

SmartPtr<ILumoSLAuthModule> LogOnOf(Credentials const& credentials) {
  if (std::holds_alternative<Ticket>(credentials)) return LumoSLAuth_AutoLoginAuth::CreateOne();
  auto const* const given = std::get_if<Password>(&credentials);
  if (given == nullptr) return LumoSLAuth_Annonymous::CreateOne();
  return given->domain.empty()
             ? LumoSLAuth_Authenticated::CreateOne(given->user, given->password)
             : LumoSLAuth_Authenticated::CreateOne(given->domain, given->user, given->password);
}

int MillisecondsOf(std::chrono::milliseconds time) {
  return static_cast<int>(std::clamp<long long>(time.count(), 0, INT_MAX));
}

std::chrono::microseconds Microseconds(double seconds) {
  return std::chrono::microseconds(static_cast<long long>(seconds * 1e6));
}

CallEvent EventOf(ServiceLayerResponse const& outcome, std::optional<FailedTry> const& failed,
                  int attempt) {
  HttpMessage const& exchange = *outcome.GetExchange();
  CallEvent event;
  event.operation = outcome.GetOperationName();
  event.attempt = attempt;
  event.httpStatus = exchange.GetStatusCode();
  if (failed) event.failure = failed->error.Code();
  event.bytesSent = exchange.GetRequestBuffer()->GetBytes().size();
  if (auto const reply = exchange.GetResponseBuffer()) {
    event.bytesReceived = reply->GetBytes().size();
  }
  HttpTimings const& timings = exchange.GetTimings();
  event.nameLookup = Microseconds(timings.nameLookup);
  event.connect = Microseconds(timings.connect);
  event.tls = Microseconds(timings.tls);
  event.firstByte = Microseconds(timings.firstByte);
  event.total = Microseconds(timings.total);
  return event;
}

Error LostChange(Error const& error) {
  ErrorDetails details = error.Details();
  details.hint = {HintCode::LookBeforeRepeating};
  details.attempts = {{1, error.Code(), error.what(), std::chrono::milliseconds(0)}};
  return {ErrorCode::OutcomeUnknown,
          std::string("the change was sent and its reply was lost: ") + error.what(),
          std::move(details)};
}

}  // namespace

std::string BuiltInNamespace() { return LumoSession::GetVendorNamespaceBase(); }

SmartPtr<LumoServiceLayerServices> MakeServices(
    std::string const& url, ConnectOptions const& options,
    std::function<bool(std::uint64_t sent, std::uint64_t received)> progress) {
  StartUp();
  auto const session = LumoSession::CreateOne(url, LogOnOf(options.credentials));
  if (!options.vendorNamespace.empty()) session->SetVendorNamespaceBase(options.vendorNamespace);
  session->SetApplicationName(options.applicationName);
  int const stall = MillisecondsOf(options.stall);
  session->SetTimeouts(MillisecondsOf(options.resolve), MillisecondsOf(options.connect), stall,
                       stall);
  HttpTransportSettings settings;
  settings.caFile = options.caFile;
  settings.clientCertificateFile = options.certificateFile;
  settings.clientKeyFile = options.keyFile;
  settings.caPath = options.caFolder;
  settings.proxy = options.proxy;
  settings.proxyUser = options.proxyUser;
  settings.proxyPassword = options.proxyPassword;
  settings.progress = std::move(progress);
  session->HttpClientPtr()->SetTransportSettings(settings);
  return {new LumoServiceLayerServices(session)};
}

bool CallScope::HasEnded() const {
  return cancel.IsCancelled() || stop.IsCancelled() || server.IsCancelled() ||
         (isInterrupted && isInterrupted());
}

bool CallScope::IsOver() const { return HasEnded() || (deadline && Clock::now() >= *deadline); }

void CallScope::ThrowWhenOver(std::string const& operation) const {
  if (!IsOver()) return;
  ErrorDetails details;
  details.operation = operation;
  if (HasEnded()) throw Error(ErrorCode::Cancelled, "cancelled", std::move(details));
  throw Error(ErrorCode::Timeout, "the time for this work is over", std::move(details));
}

struct Connection::Parts {
  Parts(std::string const& serverUrl, ConnectOptions const& connectOptions)
      : url(serverUrl),
        options(connectOptions),
        gate(Gate::Of(serverUrl)),
        services(MakeServices(url, options, [this](std::uint64_t, std::uint64_t received) {
          return OnProgress(received);
        })) {}

  bool OnProgress(std::uint64_t received) {
    CountReceived(received);
    return !scope.IsOver();
  }

  void CountReceived(std::uint64_t received) {
    std::uint64_t const before = std::exchange(counted, received);
    if (scope.received && received > before) scope.received->fetch_add(received - before);
  }

  /// A place among the calls to the server, once there is one.
  std::unique_ptr<Gate::Place> Enter(Tries const& tries) const {
    for (;;) {
      scope.ThrowWhenOver();
      tries.ThrowWhenTooLong(gate->ClosedUntil());
      if (auto place = gate->Enter(options.maxConcurrency)) return place;
    }
  }

  std::optional<FailedTry> TryOnce(Once const& once, Tries& tries) {
    auto const place = Enter(tries);
    tries.Begin();
    counted = 0;
    SmartPtr<ServiceLayerResponse> const outcome = once();
    auto failed = Judge(outcome, url, options);
    if (!outcome || !outcome->GetExchange()) return failed;
    bool const isOver = failed && !failed->hasReply && scope.IsOver();
    if (!isOver) Note(failed, *place);
    CallEvent const event = EventOf(*outcome, failed, tries.Number());
    CountReceived(event.bytesReceived);
    if (scope.onCall) scope.onCall(event);
    return failed;
  }

  void Note(std::optional<FailedTry> const& failed, Gate::Place const& place) const {
    if (!failed || failed->hasReply) gate->NoteSuccess();
    if (failed && failed->IsOverload()) gate->NoteOverload(place);
  }

  std::string url;
  ConnectOptions options;
  CallScope scope;
  std::shared_ptr<Gate> gate;
  std::uint64_t counted = 0;  // bytes of the present call that `scope.received` has
  SmartPtr<LumoServiceLayerServices> services;
};

Connection::Connection(std::string const& url, ConnectOptions const& options)
    : m_parts(std::make_unique<Parts>(url, options)) {
  m_parts->scope.onCall = options.onCall;
  m_parts->scope.isInterrupted = options.isInterrupted;
}

Connection::~Connection() = default;

SmartPtr<BrowseService> Connection::Browse() const { return Services().GetBrowseService(); }
SmartPtr<SearchService> Connection::Search() const { return Services().GetSearchService(); }
SmartPtr<DataExportService> Connection::Export() const { return Services().GetDataExportService(); }
SmartPtr<DataImportService> Connection::Import() const { return Services().GetDataImportService(); }
SmartPtr<EngineeringDataService> Connection::Engineering() const {
  return Services().GetEngineeringDataService();
}
LumoServiceLayerServices& Connection::Services() const { return *m_parts->services; }
std::string const& Connection::Url() const { return m_parts->url; }
ConnectOptions const& Connection::Options() const { return m_parts->options; }
CallScope& Connection::Scope() { return m_parts->scope; }

void Connection::Run(Kind kind, Once const& once) {
  m_parts->scope.server = m_parts->options.cancel;
  Tries tries(m_parts->options.retry, m_parts->scope);
  while (std::optional<FailedTry> const failed = m_parts->TryOnce(once, tries)) {
    if (kind == Kind::Write)
      throw failed->isOutcomeOpen ? LostChange(failed->error) : failed->error;
    if (!failed->hasReply) m_parts->scope.ThrowWhenOver(failed->error.Operation());
    tries.WaitForNext(*failed, *m_parts->gate);
  }
}

}  // namespace lumo
