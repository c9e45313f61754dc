#include "cli/browse/Server.h"

#include <arpa/inet.h>
#include <httplib.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <atomic>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <utility>

#include "cli/browse/Guard.h"
#include "cli/browse/Page.h"
#include "cli/browse/Views.h"
#include "lumo/toolkit/Numbers.h"

namespace cli::browse {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kWorkers = 64;

/// No scripts but the page's own, nothing from elsewhere, no frames around it, and no way from text
/// to markup. Nothing is kept by the browser, since the data may be confidential.
httplib::Headers SafeHeaders() {
  return {{"Content-Security-Policy",
           "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
           "img-src 'self' blob:; base-uri 'none'; form-action 'none'; "
           "frame-ancestors 'none'; require-trusted-types-for 'script'; trusted-types 'none'"},
          {"X-Content-Type-Options", "nosniff"},
          {"X-Frame-Options", "DENY"},
          {"Referrer-Policy", "no-referrer"},
          {"Cross-Origin-Resource-Policy", "same-origin"},
          {"Cross-Origin-Opener-Policy", "same-origin"},
          {"Cache-Control", "no-store"}};
}

int StatusOf(lumo::ErrorCode code) {
  switch (code) {
    case lumo::ErrorCode::InvalidArgument:
    case lumo::ErrorCode::Ambiguous: return 400;
    case lumo::ErrorCode::NotFound: return 404;
    default: return 502;
  }
}

/// Only letters that need no care in a header.
std::string PlainName(std::string const& name) {
  std::string plain;
  for (char const c : name) {
    bool const isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                         (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
    plain += isPlain ? c : '_';
  }
  return plain.empty() ? "file" : plain;
}

/// Shuts the connections that clients have made to that port.
void ShutConnections(int port, int how) {
  std::error_code error;  // descriptors come and go
  for (auto const& entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
    int descriptor = -1;
    if (!lumo::ReadInteger(entry.path().filename().string(), descriptor)) continue;
    sockaddr_in own{};
    socklen_t size = sizeof own;
    bool const isNamed = getsockname(descriptor, reinterpret_cast<sockaddr*>(&own), &size) == 0;
    if (isNamed && own.sin_family == AF_INET && ntohs(own.sin_port) == port) {
      shutdown(descriptor, how);
    }
  }
}

/// As it stands: compression, which the HTTP library would choose for the browser, takes longer on
/// loopback than it saves.
constexpr char kWorkbook[] = "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet";

void Put(httplib::Response& response, std::string text, std::string const& type) {
  auto const kept = std::make_shared<std::string const>(std::move(text));
  if (kept->empty()) return response.set_content("", type);
  response.set_content_provider(
      kept->size(), type, [kept](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
        return sink.write(kept->data() + offset, length);
      });
}

/// A picture as what its bytes say it is; all else only to be saved.
void Send(Bytes const& file, httplib::Response& response) {
  std::string const type = file.isPicture ? PictureType(file.bytes) : "";
  if (type.empty()) {
    response.set_header("Content-Disposition",
                        "attachment; filename=\"" + PlainName(file.name) + "\"");
  }
  Put(response, file.bytes, type.empty() ? "application/octet-stream" : type);
}

}  // namespace

struct Server::Parts {
  using View = Json (Views::*)(Query const&) const;

  Parts(lumo::Client client, ServerOptions serverOptions)
      : options(std::move(serverOptions)), views(std::move(client), cancel) {
    http.set_default_headers(SafeHeaders());
    http.set_keep_alive_max_count(1);  // what follows a refused request is not read
    http.set_payload_max_length(0);
    // Anybody on the machine may connect, and send a request as slowly as they like.
    http.new_task_queue = [] { return new httplib::ThreadPool(kWorkers); };
    http.set_pre_routing_handler(
        [this](httplib::Request const& request, httplib::Response& response) {
          return Refuses(request, response) ? httplib::Server::HandlerResponse::Handled
                                            : httplib::Server::HandlerResponse::Unhandled;
        });
    http.Get("/", [this](auto const& request, auto& response) { SendPage(request, response); });
    http.Get("/page/.*", [](auto const& request, auto& response) {
      if (PageFile const* const file = FindPageFile(request.path)) {
        Put(response, std::string(file->bytes), std::string(file->type));
      } else {
        response.status = 404;
      }
    });
    http.Get("/api/server", [this](auto const& /*request*/, auto& response) {
      Answer(response, [this] { return views.Server(); });
    });
    Add("/api/table", &Views::Table);
    Add("/api/tree", &Views::Tree);
    Add("/api/search", &Views::Search);
    Add("/api/records", &Views::Records);
    Add("/api/heads", &Views::Heads);
    Add("/api/around", &Views::Around);
    Add("/api/columns", &Views::Columns);
    Add("/api/progress", &Views::Progress);
    http.Get("/api/file", [this](auto const& request, auto& response) {
      Guarded(response, [&] { Send(views.File(request.params), response); });
    });
    http.Get("/api/workbook", [this](auto const& request, auto& response) {
      Guarded(response, [&] {
        if (!options.workbook) throw std::runtime_error("no spreadsheets are made here");
        Put(response, options.workbook(views.Workbook(request.params)), kWorkbook);
      });
    });
    Listen();
  }

  ~Parts() {
    cancel.Cancel();
    http.stop();
    // A worker waits as long as a client goes on sending; answers have a second to get out.
    for (int round = 0; !hasEnded; ++round) {
      ShutConnections(options.port, round < 50 ? SHUT_RD : SHUT_RDWR);
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    thread.join();
  }
  Parts(Parts const&) = delete;
  Parts& operator=(Parts const&) = delete;

  void Listen() {
    // Not those of the library, by which two pages could share a port and confuse their tokens.
    http.set_socket_options([](socket_t listener) {
      int const yes = 1;
      setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    bool const isBound = options.port == 0 ? (options.port = http.bind_to_any_port("127.0.0.1")) > 0
                                           : http.bind_to_port("127.0.0.1", options.port);
    if (!isBound) {
      throw lumo::Error(lumo::ErrorCode::InvalidArgument,
                        "cannot listen on port " + std::to_string(options.port) + " of 127.0.0.1");
    }
    guard.SetPort(options.port);
    thread = std::thread([this] {
      http.listen_after_bind();
      hasEnded = true;
    });
    while (!http.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }

  bool Refuses(httplib::Request const& request, httplib::Response& response) {
    auto const refusal =
        guard.Judge({request.method, request.path, request.get_header_value("Host"),
                     request.get_header_value("Cookie"), request.get_param_value("token"),
                     request.get_header_value("Sec-Fetch-Site")});
    if (!refusal) {
      Touch();
      return false;
    }
    response.status = refusal->status;
    if (refusal->status == 405) response.set_header("Allow", "GET");
    response.set_content(refusal->why + "\n", "text/plain; charset=utf-8");
    return true;
  }

  void SendPage(httplib::Request const& request, httplib::Response& response) const {
    if (request.has_param("token")) response.set_header("Set-Cookie", guard.Cookie());
    PageFile const& page = *FindPageFile("/page/index.html");
    Put(response, std::string(page.bytes), std::string(page.type));
  }

  void Touch() { lastRequest = Clock::now().time_since_epoch().count(); }

  template <class Work>
  void Guarded(httplib::Response& response, Work const& work) {
    struct UnderWay {
      explicit UnderWay(Parts& owner) : parts(owner) { ++parts.underWay; }
      ~UnderWay() {
        parts.Touch();
        --parts.underWay;
      }
      Parts& parts;
    } const underWayHere(*this);
    try {
      work();
    } catch (lumo::Error const& error) {
      response.status = StatusOf(error.Code());
      Json const told = JsonOf(error, options.advice ? options.advice(error) : "");
      response.set_content(TextOf(told), "application/json");
    } catch (std::exception const& error) {
      response.status = 500;
      Json const told = {{"error", {{"text", error.what()}, {"code", "Other"}}}};
      response.set_content(TextOf(told), "application/json");
    }
  }
  template <class Make>
  void Answer(httplib::Response& response, Make const& make) {
    Guarded(response, [&] { Put(response, TextOf(make()), "application/json"); });
  }
  void Add(char const* path, View view) {
    http.Get(path, [this, view](auto const& request, auto& response) {
      Answer(response, [&] { return (views.*view)(request.params); });
    });
  }

  ServerOptions options;
  lumo::CancellationToken cancel;
  Views views;
  Guard guard;
  std::atomic<int> underWay{0};  ///< requests that are being answered
  std::atomic<bool> hasEnded{false};
  std::atomic<Clock::rep> lastRequest{Clock::now().time_since_epoch().count()};
  httplib::Server http;
  std::thread thread;
};

Server::Server(lumo::Client client, ServerOptions options)
    : m_parts(std::make_unique<Parts>(std::move(client), std::move(options))) {}
Server::~Server() = default;

int Server::Port() const { return m_parts->options.port; }

std::string Server::Address(std::string const& view) const {
  return "http://127.0.0.1:" + std::to_string(Port()) + "/?token=" + m_parts->guard.Token() + view;
}

std::string Server::AddressForOnce(std::string const& view) const {
  return "http://127.0.0.1:" + std::to_string(Port()) + "/?token=" + m_parts->guard.TokenForOnce() +
         view;
}

std::chrono::seconds Server::Idle() const {
  if (m_parts->underWay > 0) return std::chrono::seconds(0);
  Clock::duration const last(m_parts->lastRequest.load());
  return std::chrono::duration_cast<std::chrono::seconds>(Clock::now().time_since_epoch() - last);
}

}  // namespace cli::browse
