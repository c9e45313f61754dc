#include "lumo/toolkit/Connection.h"

#include <algorithm>
#include <climits>
#include <mutex>
#include <variant>

#include "lumo/toolkit/Judge.h"

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

}  // namespace

struct Connection::Parts {
  Parts(std::string const& serverUrl, ConnectOptions const& connectOptions)
      : url(serverUrl), options(connectOptions), services(MakeSession()) {}

  SmartPtr<LumoSession> MakeSession() {
    StartUp();
    auto session = LumoSession::CreateOne(url, LogOnOf(options.credentials));
    session->SetApplicationName(options.applicationName);
    int const stall = MillisecondsOf(options.stall);
    session->SetTimeouts(MillisecondsOf(options.resolve), MillisecondsOf(options.connect), stall,
                         stall);
    HttpTransportSettings settings;
    settings.caFile = options.caFile;
    settings.clientCertificateFile = options.certificateFile;
    settings.clientKeyFile = options.keyFile;
    settings.proxy = options.proxy;
    settings.progress = [this](std::uint64_t, std::uint64_t) { return !IsOver(); };
    session->HttpClientPtr()->SetTransportSettings(settings);
    return session;
  }

  bool IsLate() const { return scope.deadline && Clock::now() >= *scope.deadline; }
  bool IsOver() const { return scope.cancel.IsCancelled() || IsLate(); }
  void ThrowWhenOver() const {
    if (scope.cancel.IsCancelled()) throw Error(ErrorCode::Cancelled, "cancelled");
    if (IsLate()) throw Error(ErrorCode::Timeout, "the time for this work is over");
  }

  std::string url;
  ConnectOptions options;
  CallScope scope;
  LumoServiceLayerServices services;
};

Connection::Connection(std::string const& url, ConnectOptions const& options)
    : m_parts(std::make_unique<Parts>(url, options)) {}

Connection::~Connection() = default;

SmartPtr<BrowseService> Connection::Browse() const { return Services().GetBrowseService(); }
SmartPtr<SearchService> Connection::Search() const { return Services().GetSearchService(); }
SmartPtr<DataExportService> Connection::Export() const { return Services().GetDataExportService(); }
SmartPtr<DataImportService> Connection::Import() const { return Services().GetDataImportService(); }
SmartPtr<EngineeringDataService> Connection::Engineering() const {
  return Services().GetEngineeringDataService();
}
LumoServiceLayerServices& Connection::Services() const { return m_parts->services; }

void Connection::SetScope(CallScope const& scope) { m_parts->scope = scope; }

void Connection::Run(Kind kind, Once const& once) {
  m_parts->ThrowWhenOver();
  std::string badValue;
  SmartPtr<ServiceLayerResponse> const outcome = once(badValue);
  std::optional<Error> const error = Judge(outcome, badValue, m_parts->url, m_parts->options);
  if (!error) return;
  bool const isLost = error->HttpStatus() == 0 && error->Code() != ErrorCode::InvalidArgument;
  if (kind == Kind::Write && isLost) {
    ErrorDetails details = error->Details();
    details.hint = {HintCode::LookBeforeRepeating};
    throw Error(ErrorCode::OutcomeUnknown,
                std::string("the change was sent and its reply was lost: ") + error->what(),
                std::move(details));
  }
  if (isLost) m_parts->ThrowWhenOver();
  throw *error;
}

}  // namespace lumo
