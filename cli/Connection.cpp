#include "cli/Connection.h"

#include <curl/curl.h>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "cli/Interrupt.h"
#include "cli/Text.h"

namespace cli {
namespace {

/// Asks on the terminal, without showing what is typed; standard input may hold data.
std::string AskForPassword(std::string const& user) {
  int const terminal = open("/dev/tty", O_RDWR | O_CLOEXEC);
  if (terminal < 0) {
    throw UsageFailure("no password: set LUMO_PASSWORD or name a file with --password-file");
  }
  auto const write = [terminal](std::string const& text) {
    return ::write(terminal, text.data(), text.size()) >= 0;
  };
  write("Password of " + user + ": ");
  termios shown{};
  tcgetattr(terminal, &shown);
  termios hidden = shown;
  hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  tcsetattr(terminal, TCSAFLUSH, &hidden);
  std::string password;
  char c = 0;
  ssize_t got = 0;
  while ((got = read(terminal, &c, 1)) == 1 && c != '\n') password += c;
  tcsetattr(terminal, TCSAFLUSH, &shown);
  write("\n");
  close(terminal);
  StopWhenInterrupted();
  if (got != 1) throw UsageFailure("no password");
  return password;
}

SmartPtr<ILumoSLAuthModule> LogOnOf(ServerOptions const& options, std::string const& password) {
  if (options.useTicket) return LumoSLAuth_AutoLoginAuth::CreateOne();
  if (options.user.empty()) return LumoSLAuth_Annonymous::CreateOne();
  return options.domain.empty()
             ? LumoSLAuth_Authenticated::CreateOne(options.user, password)
             : LumoSLAuth_Authenticated::CreateOne(options.domain, options.user, password);
}

constexpr int kUnauthorized = 401;
constexpr int kForbidden = 403;

}  // namespace

std::string PasswordOf(ServerOptions const& options) {
  if (options.user.empty() || options.useTicket) return "";
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
  return AskForPassword(options.user);
}

void CheckUrl(std::string const& url) {
  std::unique_ptr<CURLU, void (*)(CURLU*)> const parts(curl_url(), curl_url_cleanup);
  CURLUcode const code =
      curl_url_set(parts.get(), CURLUPART_URL, url.c_str(), CURLU_DEFAULT_SCHEME);
  char* scheme = nullptr;
  if (code == CURLUE_OK) curl_url_get(parts.get(), CURLUPART_SCHEME, &scheme, 0);
  std::string const name = scheme == nullptr ? "" : scheme;
  curl_free(scheme);
  if (name != "http" && name != "https") throw UsageFailure(url + " is no address of a server");
}

void CheckNamespace(std::string const& base) {
  if (base.find_first_of(" \t\r\n\"<>") != std::string::npos) {
    throw UsageFailure("--namespace takes a URI such as http://www.example.com/lumo/");
  }
}

void Connection::CallLog::Log(int level, std::string const& message) {
  if (m_isVerbose && level > 1) std::cerr << message + '\n';
}

Connection::Connection(ServerOptions const& options, std::string const& password)
    : m_url(options.url), m_log(options.isVerbose), m_services([&] {
        auto session =
            LumoSession::CreateOneWithLogger(options.url, LogOnOf(options, password), &m_log);
        session->SetApplicationName("lumo");
        session->SetVendorNamespaceBase(options.namespaceBase);
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
  if (outcome.Succeeded()) return;
  CallOutcomes::eCallOutcome const what = outcome.GetOutcome();
  int const code = outcome.GetResponseCode();
  if (what == CallOutcomes::NoReply) {
    throw Failure(ExitCode::Transport,
                  "no reply from " + m_url + ": " + outcome.GetTransportError());
  }
  if (code == kUnauthorized || code == kForbidden) {
    throw Failure(ExitCode::LogOnRefused, "the server refuses the log-on (status " +
                                              std::to_string(code) + "); see --user");
  }
  if (what == CallOutcomes::Fault || what == CallOutcomes::FaultInSuccess) {
    std::string const& text = outcome.GetFaultText();
    throw Failure(ExitCode::ServerFault,
                  "the server says: " + OneLine(text.empty() ? outcome.GetFaultCode() : text));
  }
  if (what == CallOutcomes::OtherStatus) {
    throw Failure(ExitCode::ServerFault, "the server answers with status " + std::to_string(code) +
                                             "; is " + m_url + " its service layer?");
  }
  throw Failure(ExitCode::NotUnderstood, OneLine(outcome.ErrorText()));
}

}  // namespace cli
