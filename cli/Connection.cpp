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

/// Throws `Failure` unless the reply holds a response: an HTML page may well be well-formed XML,
/// and a fault may come with the status of success.
void CheckBody(std::string const& reply) {
  std::size_t const body = reply.find("<s:Body");
  std::size_t const begin = body == std::string::npos ? body : reply.find('<', body + 1);
  std::string const name =
      begin == std::string::npos
          ? ""
          : reply.substr(begin + 1, reply.find_first_of(" />", begin + 1) - begin - 1);
  std::string const local = name.substr(name.find(':') + 1);
  std::size_t const text = reply.find("<faultstring");
  if (local == "Fault" && text != std::string::npos) {
    std::size_t const from = reply.find('>', text) + 1;
    throw Failure(ExitCode::ServerFault,
                  "the server says: " + OneLine(reply.substr(from, reply.find('<', from) - from)));
  }
  constexpr std::string_view kResponse = "Response";
  bool const isResponse = local == "text" || (local.size() > kResponse.size() &&
                                              local.compare(local.size() - kResponse.size(),
                                                            kResponse.size(), kResponse) == 0);
  if (isResponse) return;
  throw Failure(ExitCode::NotUnderstood,
                reply.empty() ? "the reply is empty"
                              : "the reply holds no response: " + OneLine(reply.substr(0, 80)));
}

constexpr int kOk = 200;
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
  CheckBody(outcome.GetResponseMessage());
}

}  // namespace cli
