#pragma once

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "sandbox/http/Server.h"
#include "sandbox/seed/Seed.h"

/// What a command put out and how it ended.
struct Outcome {
  int code = -1;
  std::string out;
  std::string error;
};

/// A server inside the test, and the command that is run on it as a user does.
class CommandTest : public testing::Test {
 protected:
  /// Starts with that content; the log-on is none unless options say otherwise.
  void Start(sandbox::Content content = sandbox::Content::Minimal,
             sandbox::ServerOptions const& options = {});
  /// The same without options, but the server keeps a log.
  void StartWithLog();
  /// The log. The server stops, as it writes a call down after its reply.
  std::string Log();
  /// Runs lumo with these arguments; `environment` has lines such as "LUMO_USER=ann".
  Outcome Run(std::vector<std::string> const& arguments,
              std::vector<std::string> const& environment = {}) const;
  /// The same, with Ctrl-C once the server has received the first call.
  Outcome RunAndInterrupt(std::vector<std::string> const& arguments) const;
  /// The same, killed after that time unless it has ended by then.
  Outcome RunAndKill(std::vector<std::string> const& arguments,
                     std::chrono::microseconds after) const;
  /// The same on a terminal so many characters wide; what it shows is in `out`.
  Outcome RunOnTerminal(unsigned short width, std::vector<std::string> const& arguments,
                        std::vector<std::string> const& environment = {}) const;
  /// The same, on a server that answers every call with status 200 and that body.
  Outcome RunOnServerThatSays(std::string const& body, std::vector<std::string> const& arguments);
  /// Makes the next calls go wrong, a line for each.
  void Plan(std::string const& faults) const;

  std::string Url() const { return m_url; }
  static std::string Read(std::string const& file);
  /// A file in a folder that goes with the test.
  std::string File(std::string const& name, std::string const& content) const;
  std::string File(std::string const& name) const { return m_folder + "/" + name; }

  CommandTest();
  ~CommandTest() override;

 private:
  std::string m_folder;
  std::ostringstream m_log;
  std::unique_ptr<sandbox::Store> m_store;
  std::unique_ptr<sandbox::Server> m_server;
  std::string m_url;
};
