#include "cli/Connection.h"

#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "cli/Interrupt.h"
#include "cli/Text.h"
#include "sandbox/Server.h"
#include "sandbox/Store.h"

namespace cli {
namespace {

/// Asks on the terminal, without showing what is typed.
std::string AskForPassword(std::string const& user) {
  std::cerr << "Password of " << user << ": " << std::flush;
  termios shown{};
  tcgetattr(STDIN_FILENO, &shown);
  termios hidden = shown;
  hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
  std::string password;
  std::getline(std::cin, password);
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &shown);
  std::cerr << '\n';
  StopWhenInterrupted();
  return password;
}

SmartPtr<ILumoSLAuthModule> LogOnOf(ServerOptions const& options, std::string const& password) {
  if (options.useTicket) return LumoSLAuth_AutoLoginAuth::CreateOne();
  if (options.user.empty()) return LumoSLAuth_Annonymous::CreateOne();
  return options.domain.empty()
             ? LumoSLAuth_Authenticated::CreateOne(options.user, password)
             : LumoSLAuth_Authenticated::CreateOne(options.domain, options.user, password);
}

constexpr int kOk = 200;
constexpr int kUnauthorized = 401;
constexpr int kForbidden = 403;

}  // namespace

std::string PasswordOf(ServerOptions const& options) {
  if (options.user.empty()) return "";
  if (!options.passwordFile.empty()) {
    std::ifstream file(options.passwordFile);
    std::string password;
    if (!std::getline(file, password)) {
      throw UsageFailure("there is no password in " + options.passwordFile);
    }
    if (!password.empty() && password.back() == '\r') password.pop_back();
    return password;
  }
  if (char const* const password = std::getenv("LUMO_PASSWORD")) return password;
  if (isatty(STDIN_FILENO) == 1) return AskForPassword(options.user);
  throw UsageFailure("no password: set LUMO_PASSWORD or name a file with --password-file");
}

struct InnerSandbox::Parts {
  explicit Parts(std::string const& file) : store(file, sandbox::Content::Full), server(store) {}
  sandbox::Store store;
  sandbox::Server server;
  std::string url;
};

InnerSandbox::InnerSandbox(std::string const& file) : m_parts(std::make_unique<Parts>(file)) {
  m_parts->url = "http://127.0.0.1:" + std::to_string(m_parts->server.Start(0));
}

InnerSandbox::~InnerSandbox() { m_parts->server.Stop(); }

std::string const& InnerSandbox::Url() const { return m_parts->url; }

void Connection::CallLog::Log(int level, std::string const& message) {
  if (level <= 1) {
    m_error = message;
  } else if (m_isVerbose) {
    std::cerr << message + '\n';
  }
}

Connection::Connection(ServerOptions const& options, std::string const& password)
    : m_url(options.url), m_log(options.isVerbose), m_services([&] {
        auto session =
            LumoSession::CreateOneWithLogger(options.url, LogOnOf(options, password), &m_log);
        session->SetApplicationName("lumo");
        int const silence = options.timeoutSeconds * 1000;
        session->SetTimeouts(10'000, silence == 0 ? 0 : std::min(silence, 60'000), silence,
                             silence);
        HttpTransportSettings settings;
        settings.caFile = options.caFile;
        settings.proxy = options.proxy;
        settings.progress = [](std::uint64_t, std::uint64_t) { return !IsInterrupted(); };
        session->HttpClientPtr()->SetTransportSettings(settings);
        return session;
      }()) {}

void Connection::Check(ServiceLayerResponse const& outcome) const {
  StopWhenInterrupted();
  int const code = outcome.GetResponseCode();
  if (!outcome.GetTransportError().empty()) {
    throw Failure(ExitCode::Transport,
                  "no reply from " + m_url + ": " + outcome.GetTransportError());
  }
  if (code == kUnauthorized || code == kForbidden) {
    throw Failure(ExitCode::LogOnRefused, "the server refuses the log-on (status " +
                                              std::to_string(code) + "); see --user");
  }
  std::string const fault = outcome.GetErrorMessage();
  if (!fault.empty()) throw Failure(ExitCode::ServerFault, "the server says: " + OneLine(fault));
  if (code != kOk) {
    throw Failure(ExitCode::ServerFault, "the server answers with status " + std::to_string(code) +
                                             "; is " + m_url + " its service layer?");
  }
  if (!m_log.Error().empty()) throw Failure(ExitCode::NotUnderstood, OneLine(m_log.Error()));
  // An HTML page may well be well-formed XML, and holds nothing.
  std::string const& reply = outcome.GetResponseMessage();
  std::size_t const body = reply.find("<s:Body");
  if (body == std::string::npos || reply.compare(body, 9, "<s:Body/>") == 0) {
    throw Failure(ExitCode::NotUnderstood,
                  "the reply is no SOAP envelope: " + OneLine(reply.substr(0, 80)));
  }
}

}  // namespace cli
