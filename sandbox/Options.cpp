#include "sandbox/Options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <utility>
#include <vector>

namespace sandbox {
namespace {

constexpr int kUsageError = 2;
constexpr char kFooter[] =
    "Prints one line of JSON with its address. Stops on SIGTERM and SIGINT.\n";

CLI::Validator NotEmpty() {
  return CLI::Validator(
      [](std::string const& text) { return text.empty() ? std::string("is empty") : ""; }, "");
}

template <class Choice>
using Words = std::vector<std::pair<std::string, Choice>>;

/// Adds an option that takes one of the words.
template <class Choice>
void AddChoice(CLI::App& app, std::string const& name, std::string const& what,
               std::string const& type, Words<Choice> const& words, Choice& choice) {
  std::string known;
  for (auto const& entry : words) known += (known.empty() ? "" : ", ") + entry.first;
  app.add_option_function<std::string>(
         name,
         [name, words, known, &choice](std::string const& word) {
           auto const found = std::find_if(words.begin(), words.end(),
                                           [&](auto const& entry) { return entry.first == word; });
           if (found == words.end()) throw CLI::ValidationError(name, "takes one of " + known);
           choice = found->second;
         },
         what + known)
      ->type_name(type);
}

void AddOptions(CLI::App& app, Options& options, std::string& passwordFile) {
  auto const number = [&app](char const* name, int& value, int most, char const* what) {
    app.add_option(name, value, what)->type_name("N")->check(CLI::Range(0, most).description(""));
  };
  app.set_version_flag("--version", "lumo-sandbox " SANDBOX_VERSION, "print the version");
  app.set_help_flag("--help", "print this");
  number("--port", options.port, 65535, "listen on this port of 127.0.0.1 (0: any free one)");
  number("--ttl", options.ttlSeconds, 1'000'000, "stop after so many seconds (0: never)");
  app.add_flag("--stop-on-eof", options.stopOnEof, "stop when standard input is closed");

  app.option_defaults()->group("Data");
  app.add_option("--db", options.database, "keep the data in this SQLite file (in memory)")
      ->type_name("FILE")
      ->check(NotEmpty());
  AddChoice<Content>(
      app, "--seed", "what new data hold (full): ", "CONTENT",
      {{"empty", Content::Empty}, {"minimal", Content::Minimal}, {"full", Content::Full}},
      options.content);
  number("--records", options.records, 1'000'000, "add so many made-up materials (0)");

  app.option_defaults()->group("Log-on");
  AddChoice<LogOn>(app, "--log-on", "what requests must bring (none): ", "KIND",
                   {{"none", LogOn::None}, {"basic", LogOn::Basic}, {"digest", LogOn::Digest}},
                   options.server.logOn);
  app.add_option("--user", options.server.user, "the one user who may log on (lumo)")
      ->type_name("NAME")
      ->check(NotEmpty())
      ->check(CLI::Validator(
          [](std::string const& name) {
            return name.find(':') == std::string::npos ? std::string() : "must not have a colon";
          },
          ""));
  app.add_option("--password-file", passwordFile, "the password is the first line of this file")
      ->type_name("FILE")
      ->check(NotEmpty());

  app.option_defaults()->group("Service");
  app.add_option("--namespace", options.server.namespaceBase,
                 "base of the namespaces that it speaks (the built-in one)")
      ->type_name("URI")
      ->check(NotEmpty())
      ->check(CLI::Validator(
          [](std::string const& base) {
            return base.find_first_of(" \t\r\n\"<>") == std::string::npos ? std::string()
                                                                          : "is not a URI";
          },
          ""));
  app.add_option("--log", options.logFile, "report requests on standard error, or in this file")
      ->type_name("[FILE]")
      ->expected(0, 1);
}

/// The help text with one empty line between its parts.
std::string Help(CLI::App const& app) {
  std::string text = app.help();
  for (std::size_t at = 0; (at = text.find("\n\n\n")) != std::string::npos;) text.erase(at, 1);
  return text;
}

/// The password is never an option's value: everybody on the machine can read those.
std::string Password(std::string const& file) {
  std::string password;
  if (!file.empty()) {
    std::ifstream in(file);
    if (!std::getline(in, password)) {
      throw CLI::ValidationError("cannot read a password from " + file);
    }
    if (!password.empty() && password.back() == '\r') password.pop_back();
  } else if (char const* const value = std::getenv("LUMO_SANDBOX_PASSWORD")) {
    password = value;
  }
  if (password.empty()) {
    throw CLI::ValidationError(
        "the log-on needs a password: set LUMO_SANDBOX_PASSWORD or name a --password-file");
  }
  return password;
}

}  // namespace

Options ReadOptions(int count, char** texts) {
  Options options;
  std::string passwordFile;
  CLI::App app("A service layer on this machine, for trials and tests", "lumo-sandbox");
  app.get_formatter()->column_width(28);
  app.footer(kFooter);
  AddOptions(app, options, passwordFile);
  try {
    app.parse(count, texts);
    options.log = app.count("--log") > 0;
    if (options.server.logOn != LogOn::None) {
      options.server.password = Password(passwordFile);
    } else if (!passwordFile.empty()) {
      throw CLI::ValidationError("--password-file needs --log-on basic or digest");
    }
  } catch (CLI::CallForHelp const&) {
    std::cout << Help(app);
    std::exit(0);
  } catch (CLI::CallForVersion const& version) {
    std::cout << version.what() << '\n';
    std::exit(0);
  } catch (CLI::Error const& error) {
    std::cerr << "lumo-sandbox: " << error.what() << "; see lumo-sandbox --help\n";
    std::exit(kUsageError);
  }
  return options;
}

}  // namespace sandbox
