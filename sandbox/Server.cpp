#include "Server.h"

#include <sys/socket.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

#include "Data.h"
#include "FaultScript.h"
#include "HttpServer.h"
#include "LogOn.h"
#include "Operations.h"
#include "RequestLog.h"
#include "Soap.h"
#include "WellFormed.h"
#include "Wsdl.h"

namespace sandbox {
namespace {

constexpr std::size_t kMaxRequestBytes = 64UL * 1024 * 1024;
constexpr std::size_t kConnections = 16;
constexpr std::size_t kCallsPerConnection = 100'000'000;
constexpr int kIdleSeconds = 2;
constexpr char kDataPath[] = R"(/data/(\d{1,9})/(\d{1,9}))";
constexpr char kFaultsPath[] = "/control/faults";
constexpr char kPlainType[] = "text/plain; charset=utf-8";
constexpr char kReplyType[] = "text/xml; charset=utf-8";

/// The request's body, which is read to its end even when it is refused, so that the connection can
/// go on.
std::string ReadBody(httplib::Request const& request, httplib::ContentReader const& read) {
  std::string body;
  bool isTooLong = false;
  bool isWhole = false;
  auto const take = [&](char const* bytes, std::size_t count) {
    isTooLong = isTooLong || count > kMaxRequestBytes - body.size();
    if (!isTooLong) body.append(bytes, count);
    return true;
  };
  if (request.is_multipart_form_data()) {  // has the wrong type and is refused for that
    isWhole = read([](httplib::MultipartFormData const&) { return true; }, take);
  } else {
    isWhole = read(take);
  }
  std::uint64_t const announced = request.get_header_value<std::uint64_t>("Content-Length");
  if (isTooLong || announced > kMaxRequestBytes) throw Fault("the request is longer than 64 MiB");
  if (!isWhole) throw Fault("the request's body is cut short or broken");
  return body;
}

/// Refuses a request by what its headers say.
void CheckHeaders(httplib::Request const& request, Operation const* operation) {
  std::string const type = request.get_header_value("Content-Type");
  if (type != "text/xml;charset=UTF-8") throw Fault("unexpected Content-Type \"" + type + "\"");
  if (operation != nullptr) return;
  throw Fault("The message with Action '" + request.get_header_value("SOAPAction") +
                  "' cannot be processed at the receiver, due to a ContractFilter mismatch at the"
                  " EndpointDispatcher. Sender and receiver do not share this action.",
              Blame::Action);
}

/// The element that the body of a request must hold; throws `Fault` for anything else.
pugi::xml_node CheckRequest(pugi::xml_document& document, std::string const& text,
                            Service const& service, Namespaces const& namespaces,
                            Operation const& operation) {
  CheckWellFormed(text);
  // Text outside the root element and blanks that are an element's only content are kept, so that
  // they can be refused; blanks between elements do not matter.
  unsigned const flags = pugi::parse_default | pugi::parse_declaration | pugi::parse_fragment |
                         pugi::parse_ws_pcdata_single;
  auto const parsed = document.load_buffer(text.data(), text.size(), flags, pugi::encoding_utf8);
  if (!parsed) throw Fault(std::string("the request is not XML: ") + parsed.description());
  pugi::xml_node const body = CheckEnvelope(document, service, namespaces);
  Checker in(body);
  if (operation.rootTag.empty()) {
    in.End();
    return body;
  }
  pugi::xml_node const content =
      in.Required(std::string(service.prefix) + ":" + std::string(operation.rootTag));
  in.End();
  return content;
}

void ResetInstead(httplib::Response& response) {
  Connection::Current().Reset();
  response.status = 0;  // none is sent
}

/// Answers with the planned fault where the call itself is not to be done.
bool ReplacesReply(PlannedFault const& fault, httplib::Response& response) {
  switch (fault.kind) {
    case PlannedFault::Kind::Fault:
      response.status = 500;
      response.set_content(FaultReply(Blame::Server, "this fault was asked for"), kReplyType);
      return true;
    case PlannedFault::Kind::Status:
      response.status = fault.number;
      if (fault.retryAfter) response.set_header("Retry-After", std::to_string(*fault.retryAfter));
      return true;
    case PlannedFault::Kind::Html:
      response.status = 200;
      response.set_content(
          "<!DOCTYPE html>\n<html><head><title>Proxy</title></head>"
          "<body>Please log on<br></body></html>\n",
          "text/html; charset=utf-8");
      return true;
    case PlannedFault::Kind::Reset: ResetInstead(response); return true;
    case PlannedFault::Kind::Stall:
      Connection::Current().Pause(std::chrono::seconds(fault.number));
      return false;
    case PlannedFault::Kind::Cut:
    case PlannedFault::Kind::Swallow:
    case PlannedFault::Kind::Malformed: return false;
  }
  return false;
}

/// Answers with the reply, or with what the planned fault leaves of it.
void SetReply(httplib::Response& response, std::string reply,
              std::optional<PlannedFault> const& fault) {
  if (fault && fault->kind == PlannedFault::Kind::Swallow) return ResetInstead(response);
  if (fault && fault->kind == PlannedFault::Kind::Malformed) {
    reply.insert(reply.find('<', reply.size() / 2), "<>");
  }
  if (!fault || fault->kind != PlannedFault::Kind::Cut) {
    response.body = std::move(reply);
    response.set_header("Content-Type", kReplyType);
    return;
  }
  std::size_t const size = reply.size();
  std::size_t const kept = std::min(static_cast<std::size_t>(fault->number), size);
  response.set_content_provider(
      size, kReplyType,
      [reply = std::move(reply), kept](std::size_t, std::size_t, httplib::DataSink& sink) {
        if (kept > 0) sink.write(reply.data(), kept);
        return false;  // closes the connection
      });
}

}  // namespace

struct Server::Http {
  Http(Store& dataStore, ServerOptions const& options);
  void AnswerCalls(Service const& service);
  void AnswerCall(Service const& service, httplib::Request const& request,
                  httplib::Response& response, httplib::ContentReader const& read);
  void Describe(Service const& service);
  std::string Reply(Service const& service, Operation const& operation, std::string const& text);
  void AnswerData();
  void AnswerControl();
  void JudgeLogOn();
  std::string NameOf(httplib::Request const& request) const;
  void Report(std::ostream& out);

  Store& store;
  HttpServer server;
  std::mutex storeMutex;  // held by the operation that uses the store
  FaultScript faults;
  LogOnCheck logOn;
  Namespaces namespaces;
  std::unique_ptr<RequestLog> log;
  std::thread thread;
};

Server::Http::Http(Store& dataStore, ServerOptions const& options)
    : store(dataStore),
      logOn(options.logOn, options.user, options.password),
      namespaces(options.namespaceBase) {
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
                AnswerCall(service, request, response, read);
              });
}

void Server::Http::AnswerCall(Service const& service, httplib::Request const& request,
                              httplib::Response& response, httplib::ContentReader const& read) {
  Operation const* const operation =
      FindByAction(service, namespaces, request.get_header_value("SOAPAction"));
  auto const planned = faults.Next(operation != nullptr ? operation->name : "");
  Traffic& traffic = Connection::Current().OfRequest();
  int status = 500;
  std::string reply;
  try {
    traffic.body = ReadBody(request, read);
    if (planned && ReplacesReply(*planned, response)) {
      traffic.outcome = "not done, " + planned->What();
      return;
    }
    CheckHeaders(request, operation);
    reply = Reply(service, *operation, traffic.body);
    status = 200;
    traffic.outcome = "done";
  } catch (Fault const& fault) {
    reply = FaultReply(fault.WhoIsToBlame(), fault.what());
    traffic.outcome = std::string("refused: ") + fault.what();
  } catch (std::exception const& error) {
    reply = FaultReply(Blame::Server, error.what());
    traffic.outcome = std::string("failed: ") + error.what();
  }
  if (planned) traffic.outcome += ", " + planned->What();
  response.status = status;  // the reader of the body may have set another one
  SetReply(response, std::move(reply), planned);
}

/// The reply to one request; throws `Fault` when the request makes no sense.
std::string Server::Http::Reply(Service const& service, Operation const& operation,
                                std::string const& text) {
  pugi::xml_document request;
  Checker in(CheckRequest(request, text, service, namespaces, operation));
  pugi::xml_document reply;
  std::lock_guard<std::mutex> const lock(storeMutex);
  operation.handler(store, in, StartReply(reply, service, namespaces, operation.ResponseTag()));
  return Print(reply);
}

/// The service's description, from which a client learns the namespace.
void Server::Http::Describe(Service const& service) {
  server.Get("/" + std::string(service.name) + ".svc",
             [this, &service](httplib::Request const& request, httplib::Response& response) {
               if (!request.has_param("wsdl")) {
                 response.status = 404;
                 return;
               }
               response.set_content(Wsdl(service, namespaces, store.Url()), kReplyType);
             });
}

/// Files and pictures, under the addresses that replies name.
void Server::Http::AnswerData() {
  auto const withData = [this](httplib::Response& response, auto const& work) {
    std::lock_guard<std::mutex> const lock(storeMutex);
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
      faults.Set(request.body,
                 [](std::string_view name) { return FindOperation(name) != nullptr; });
      response.set_content(faults.Text(), kPlainType);
    } catch (std::invalid_argument const& error) {
      response.status = 400;
      response.set_content(std::string(error.what()) + "\n", kPlainType);
    }
  });
  server.Get(kFaultsPath, [this](httplib::Request const&, httplib::Response& response) {
    response.set_content(faults.Text(), kPlainType);
  });
  server.Delete(kFaultsPath,
                [this](httplib::Request const&, httplib::Response&) { faults.Clear(); });
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
        FindByAction(service, namespaces, request.get_header_value("SOAPAction"));
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
