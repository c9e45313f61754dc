#include "sandbox/http/Server.h"

#include <sys/socket.h>

#include <chrono>
#include <cstdint>
#include <mutex>
#include <ostream>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

#include "sandbox/Fault.h"
#include "sandbox/http/HttpServer.h"
#include "sandbox/http/LogOn.h"
#include "sandbox/http/RequestLog.h"
#include "sandbox/http/ServiceCalls.h"
#include "sandbox/model/Data.h"
#include "sandbox/operations/Operations.h"
#include "sandbox/operations/Wsdl.h"

namespace sandbox {
namespace {

constexpr std::size_t kConnections = 16;
constexpr std::size_t kCallsPerConnection = 100'000'000;
constexpr int kIdleSeconds = 2;
constexpr char kDataPath[] = R"(/data/(\d{1,9})/(\d{1,9}))";
constexpr char kFaultsPath[] = "/control/faults";
constexpr char kPlainType[] = "text/plain; charset=utf-8";

}  // namespace

struct Server::Http {
  Http(Store& dataStore, ServerOptions const& options);
  void AnswerCalls(Service const& service);
  void Describe(Service const& service);
  void AnswerData();
  void AnswerControl();
  void JudgeLogOn();
  std::string NameOf(httplib::Request const& request) const;
  void Report(std::ostream& out);

  Store& store;
  HttpServer server;
  ServiceCalls calls;
  LogOnCheck logOn;
  std::unique_ptr<RequestLog> log;
  std::thread thread;
};

Server::Http::Http(Store& dataStore, ServerOptions const& options)
    : store(dataStore),
      calls(dataStore, options.namespaceBase),
      logOn(options.logOn, options.user, options.password) {
  server.new_task_queue = [] { return new httplib::ThreadPool(kConnections); };
  server.set_tcp_nodelay(true);
  server.set_keep_alive_max_count(kCallsPerConnection);
  server.set_keep_alive_timeout(kIdleSeconds);
  server.set_payload_max_length(kMaxRequestBytes);
  // Without this the library shares a port that another server already listens on.
  server.set_socket_options([](int socket) {
    int const yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  });
  server.Get("/", [](httplib::Request const&, httplib::Response& response) {
    response.set_content("lumo-sandbox\n", kPlainType);
  });
  for (Service const& service : Services()) {
    AnswerCalls(service);
    Describe(service);
  }
  AnswerData();
  AnswerControl();
  if (options.logOn != LogOn::None) JudgeLogOn();
  if (options.log != nullptr) Report(*options.log);
}

void Server::Http::AnswerCalls(Service const& service) {
  server.Post("/" + std::string(service.name) + ".svc",
              [this, &service](httplib::Request const& request, httplib::Response& response,
                               httplib::ContentReader const& read) {
                calls.Answer(service, request, response, read);
              });
}

/// The service's description, from which a client learns the namespace.
void Server::Http::Describe(Service const& service) {
  server.Get("/" + std::string(service.name) + ".svc",
             [this, &service](httplib::Request const& request, httplib::Response& response) {
               if (!request.has_param("wsdl")) {
                 response.status = 404;
                 return;
               }
               response.set_content(Wsdl(service, calls.SpokenNamespaces(), store.Url()), kXmlType);
             });
}

/// Files and pictures, under the addresses that replies name.
void Server::Http::AnswerData() {
  auto const withData = [this](httplib::Response& response, auto const& work) {
    std::lock_guard<std::mutex> const lock(calls.StoreMutex());
    try {
      work();
    } catch (Fault const& fault) {
      response.status = 404;
      response.set_content(fault.what(), kPlainType);
    }
  };
  server.Get(kDataPath,
             [this, withData](httplib::Request const& request, httplib::Response& response) {
               withData(response, [&] {
                 Data const data =
                     LoadData(store, std::stoi(request.matches[1]), std::stoi(request.matches[2]));
                 response.set_content(data.bytes, data.contentType);
               });
             });
  server.Put(kDataPath,
             [this, withData](httplib::Request const& request, httplib::Response& response) {
               withData(response, [&] {
                 SaveData(store, std::stoi(request.matches[1]), std::stoi(request.matches[2]),
                          {request.body, request.get_header_value("Content-Type")});
               });
             });
}

/// What shall go wrong, to be set, read and cleared.
void Server::Http::AnswerControl() {
  server.Put(kFaultsPath, [this](httplib::Request const& request, httplib::Response& response) {
    try {
      calls.Faults().Set(request.body,
                         [](std::string_view name) { return FindOperation(name) != nullptr; });
      response.set_content(calls.Faults().Text(), kPlainType);
    } catch (std::invalid_argument const& error) {
      response.status = 400;
      response.set_content(std::string(error.what()) + "\n", kPlainType);
    }
  });
  server.Get(kFaultsPath, [this](httplib::Request const&, httplib::Response& response) {
    response.set_content(calls.Faults().Text(), kPlainType);
  });
  server.Delete(kFaultsPath,
                [this](httplib::Request const&, httplib::Response&) { calls.Faults().Clear(); });
}

/// Who may not log on learns nothing else; the control address is open.
void Server::Http::JudgeLogOn() {
  using Outcome = httplib::Server::HandlerResponse;
  server.set_pre_routing_handler([this](httplib::Request const& request,
                                        httplib::Response& response) {
    if (request.path == kFaultsPath) return Outcome::Unhandled;
    auto const challenge =
        logOn.Challenge(request.method, request.target, request.get_header_value("Authorization"));
    if (!challenge) return Outcome::Unhandled;
    std::uint64_t const announced = request.get_header_value<std::uint64_t>("Content-Length");
    if (request.has_header("Transfer-Encoding") || announced > kMaxRequestBytes) {
      Connection::Current().CloseNext();
    } else {
      Connection::Current().Skip(announced);
    }
    response.status = 401;
    response.set_header("WWW-Authenticate", *challenge);
    return Outcome::Handled;
  });
}

/// The operation that a request calls; method and address for any other request.
std::string Server::Http::NameOf(httplib::Request const& request) const {
  for (Service const& service : Services()) {
    if (request.path != "/" + std::string(service.name) + ".svc") continue;
    auto const* const operation =
        FindByAction(service, calls.SpokenNamespaces(), request.get_header_value("SOAPAction"));
    if (operation != nullptr) return std::string(operation->name);
  }
  return request.method + " " + request.target;
}

void Server::Http::Report(std::ostream& out) {
  log = std::make_unique<RequestLog>(out);
  server.set_logger([this](httplib::Request const& request, httplib::Response const& response) {
    Traffic const& traffic = Connection::Current().OfRequest();
    std::chrono::duration<double, std::milli> const time =
        std::chrono::steady_clock::now() - traffic.begin;
    log->Write({NameOf(request), response.status, traffic.bytesIn, traffic.bytesOut, time.count(),
                traffic.outcome, traffic.body.empty() ? request.body : traffic.body});
  });
}

Server::Server(Store& store, ServerOptions const& options)
    : m_http(std::make_unique<Http>(store, options)) {}

Server::~Server() { Stop(); }

int Server::Start(int port) {
  HttpServer& server = m_http->server;
  int bound = port;
  if (port == 0) {
    bound = server.bind_to_any_port("127.0.0.1");
  } else if (!server.bind_to_port("127.0.0.1", port)) {
    bound = -1;
  }
  if (bound <= 0) throw std::runtime_error("cannot listen on 127.0.0.1:" + std::to_string(port));
  m_http->store.SetUrl("http://127.0.0.1:" + std::to_string(bound));
  m_http->thread = std::thread([&server] { server.Listen(); });
  // Stop() reaches only a server that runs; connections made before are not lost.
  while (!server.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return bound;
}

void Server::Stop() {
  if (!m_http->thread.joinable()) return;
  m_http->server.Stop();
  m_http->thread.join();
}

}  // namespace sandbox
