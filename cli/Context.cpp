#include "cli/Context.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iostream>

#include "cli/Failure.h"
#include "cli/Interrupt.h"
#include "cli/Spinner.h"
#include "lumo/toolkit/Settings.h"

namespace cli {
namespace {

/// Asks on the terminal, without showing what is typed; standard input may hold data. Empty where
/// there is no terminal.
std::string AskForPassword(std::string const& user) {
  int const terminal = open("/dev/tty", O_RDWR | O_CLOEXEC);
  if (terminal < 0) return "";
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
  return got == 1 ? password : "";
}

/// "GetTables: status 200 in 12.3 ms (first byte after 11.9), 512 bytes sent, 2048 received".
void PrintCall(lumo::CallEvent const& call) {
  auto const ms = [](std::chrono::microseconds time) {
    char text[32];
    (void)std::snprintf(text, sizeof text, "%.1f", static_cast<double>(time.count()) / 1000);
    return std::string(text);
  };
  std::string line = call.operation;
  if (call.attempt > 1) line += ", try " + std::to_string(call.attempt);
  line += call.httpStatus == 0 ? ": no reply" : ": status " + std::to_string(call.httpStatus);
  line += " in " + ms(call.total) + " ms (name " + ms(call.nameLookup) + ", connected " +
          ms(call.connect) + ", secured " + ms(call.tls) + ", first byte " + ms(call.firstByte) +
          "), " + std::to_string(call.bytesSent) + " bytes sent, " +
          std::to_string(call.bytesReceived) + " received\n";
  std::cerr << line;
}

}  // namespace

lumo::ConnectOptions Context::ConnectOptions() const {
  lumo::ConnectOptions options;
  if (server.useTicket) {
    options.credentials = lumo::Ticket();
  } else if (!server.passwordFile.empty()) {
    options.credentials =
        lumo::Password{server.user, lumo::FirstLineOf(server.passwordFile), server.domain};
  } else if (!server.user.empty()) {
    options.credentials = lumo::Password{server.user, "", server.domain};
  }
  if (!server.user.empty()) options.origins["user"] = "--user";
  options.vendorNamespace = server.namespaceBase;
  options.applicationName = "lumo";
  struct Chosen {
    char const* key;
    char const* option;
    std::string const& text;
    std::string lumo::ConnectOptions::*to;
  };
  for (Chosen const& one :
       {Chosen{"ca-file", "--ca-file", server.caFile, &lumo::ConnectOptions::caFile},
        {"ca-folder", "--ca-folder", server.caFolder, &lumo::ConnectOptions::caFolder},
        {"certificate-file", "--certificate", server.certificateFile,
         &lumo::ConnectOptions::certificateFile},
        {"key-file", "--key", server.keyFile, &lumo::ConnectOptions::keyFile},
        {"proxy", "--proxy", server.proxy, &lumo::ConnectOptions::proxy},
        {"proxy-user", "--proxy-user", server.proxyUser, &lumo::ConnectOptions::proxyUser}}) {
    options.*one.to = one.text;
    if (!one.text.empty()) options.origins[one.key] = one.option;
  }
  if (!server.proxyPasswordFile.empty()) {
    options.proxyPassword = lumo::FirstLineOf(server.proxyPasswordFile);
  }
  options.stall = std::chrono::seconds(server.timeoutSeconds);
  if (server.timeoutSeconds > 0) options.connect = std::min(options.stall, options.connect);
  options.maxConcurrency = jobs;
  options.retry.maxAttempts = server.retries + 1;
  options.cancel = Interrupts();
  options.askPassword = AskForPassword;
  if (server.isVerbose) options.onCall = PrintCall;
  return options;
}

lumo::Client Context::Connect() {
  if (server.namespaceBase.find_first_of(" \t\r\n\"<>") != std::string::npos) {
    Refuse("--namespace takes a URI such as http://www.example.com/lumo/");
  }
  lumo::ConnectOptions options = ConnectOptions();
  if (server.useSandbox) {
    m_sandbox = std::make_unique<InnerSandbox>(server.sandboxFile, server.namespaceBase);
    server.server = m_sandbox->Url();
    options.credentials = lumo::Anonymous();
  }
  lumo::Client client = lumo::Client::Connect(server.server, options);
  if (!isQuiet && !server.isVerbose) Spinner::Start();
  return client;
}

lumo::ReadOptions Context::ReadOptions() const {
  lumo::ReadOptions options;
  options.chunkSize = static_cast<std::size_t>(chunk);
  options.concurrency = jobs;
  options.cancel = Interrupts();
  return options;
}

void Context::Note(std::string const& text) const {
  Spinner::Stop();
  if (!isQuiet) std::cerr << text << '\n';
}

}  // namespace cli
