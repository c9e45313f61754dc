#pragma once

#include <memory>
#include <optional>
#include <string>

#include "cli/InnerSandbox.h"
#include "cli/Output.h"
#include "lumo/toolkit/Client.h"

namespace cli {

/// Which server, and how to log on, as the options say it; what is left empty comes from the
/// environment and from the profile file.
struct ServerOptions {
  std::string server;  ///< an address, or the name of a profile
  std::string namespaceBase;
  bool useSandbox = false;
  std::string sandboxFile = ":memory:";
  std::string user;
  std::string domain;
  std::string passwordFile;
  bool useTicket = false;
  std::string caFile;
  std::string caFolder;
  std::string certificateFile;
  std::string keyFile;
  std::string proxy;
  std::string proxyUser;
  std::string proxyPasswordFile;
  int timeoutSeconds = 300;  ///< longest silence of the server; 0 waits for ever
  int retries = 4;
  bool isVerbose = false;
};

/// What every command gets.
struct Context {
  ServerOptions server;
  OutputOptions output;
  bool isQuiet = false;  ///< no progress and no notes
  int jobs = 4;
  int chunk = 0;  ///< records in a call; 0 leaves it to the toolkit

  /// The way to the server; starts the sandbox where one is wanted, and asks on the terminal for a
  /// password that nothing else gives. Throws `lumo::Error`.
  lumo::Client Connect();
  /// With the options that all reads share.
  lumo::ReadOptions ReadOptions() const;
  /// A line on standard error for a person.
  void Note(std::string const& text) const;

 private:
  lumo::ConnectOptions ConnectOptions() const;

  std::unique_ptr<InnerSandbox> m_sandbox;
};

}  // namespace cli
