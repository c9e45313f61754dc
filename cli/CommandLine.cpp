#include <algorithm>
#include <iostream>
#include <memory>
#include <utility>

#include "cli/Interrupt.h"
#include "cli/Options.h"
#include "cli/Spinner.h"
#include "lumo/toolkit/Connection.h"
#include "lumo/toolkit/Text.h"

namespace cli {

namespace {

constexpr char kEnvironment[] = R"(Environment:
  LUMO_URL              address of the server, like --url
  LUMO_USER             like --user; also LUMO_DOMAIN
  LUMO_PASSWORD         the password
  LUMO_PASSWORD_FILE    like --password-file
  LUMO_LOG_ON           anonymous, password or ticket
  LUMO_NAMESPACE_BASE   like --namespace
  LUMO_CA_FILE          like --ca-file; also LUMO_CERTIFICATE_FILE and LUMO_KEY_FILE
  LUMO_PROXY            like --proxy
  NO_COLOR              no headings in bold

Files:
  ~/.config/lumo/servers.ini
                      servers by name, for --server: "[plant]", then lines such as
                      "url = https://server/service_layer" and "log-on = ticket"

Exit status:
  0    done
  1    the server reports a fault
  2    wrong usage, or something of that name is not there
  3    log-on refused
  4    no reply
  5    partly done
  6    the reply is not understood
  130  interrupted)";

/// Options as manuals print them, "-h, --help", and a footer that keeps its lines.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_option_name(CLI::Option const* option, bool isPositional) const override {
    if (isPositional) return CLI::Formatter::make_option_name(option, isPositional);
    std::string name = option->get_name(false, true);
    for (std::size_t at = 0; (at = name.find(',', at)) != std::string::npos; at += 2) {
      name.replace(at, 1, ", ");
    }
    return name;
  }
  std::string make_help(CLI::App const* app, std::string name,
                        CLI::AppFormatMode mode) const override {
    std::string text = CLI::Formatter::make_help(app, std::move(name), mode);
    for (std::size_t at = 0; (at = text.find("\n\n\n")) != std::string::npos;) text.erase(at, 1);
    std::size_t const command = text.find("[SUBCOMMAND]");
    if (command != std::string::npos) text.replace(command, 12, "COMMAND ...");
    return text;
  }
  std::string make_option_opts(CLI::Option const* option) const override {
    if (option->get_type_size() == 0) return "";
    std::string const type = option->get_type_name();
    bool const isList = option->get_positional() && option->get_expected_max() > 1;
    return (type.empty() ? "" : " " + type) + (isList ? " ..." : "");
  }
};

constexpr std::size_t kLongestMessage = 600;

/// Tells of a failure in one line, whatever the texts of users and servers in it; gives the code.
int Told(ExitCode code, std::string const& message) {
  Spinner::Stop();
  std::string const line = OneLine(message);
  if (!line.empty()) std::cerr << "lumo: " << line.substr(0, kLongestMessage) << '\n';
  return static_cast<int>(code);
}

}  // namespace

CommandLine::CommandLine() : m_app("Command for materials-information database servers", "lumo") {
  m_app.formatter(std::make_shared<HelpFormatter>());
  m_app.get_formatter()->column_width(32);
  m_app.get_formatter()->label("Positionals", "Arguments");
  m_app.set_version_flag("--version", "lumo " LUMO_CLI_VERSION,
                         "print the version, with -v what it was built with");
  m_app.set_help_flag("-h,--help", "print this");
  m_app.fallthrough();
  m_app.footer(kEnvironment);
  AddServerOptions();
  for (auto const add : {AddBrowsing, AddUnitLists, AddSearch, AddGet, AddCompare, AddPartitions,
                         AddLinks, AddImport, AddTemplate, AddExport, AddPage, AddDoctor}) {
    add(*this);
  }
  Add("help", "print the help of a command", "  $ lumo help get",
      [this](Context& /*context*/) { PrintHelp(""); });
}

CLI::App& CommandLine::Add(char const* name, char const* what, std::string const& examples,
                           std::function<void(Context&)> run) {
  CLI::App& command = *m_app.add_subcommand(name, what);
  command.footer(
      "The server: --url URL, --server NAME of a profile, or --sandbox for made-up data; --user,\n"
      "--ticket and more stand in lumo --help.\n\n"
      "Examples:\n" +
      examples);
  command.callback([this, run = std::move(run)] { m_run = run; });
  return command;
}

int CommandLine::Run(int count, char** texts) try {
  // "get" behind "help" would be taken for the command itself.
  if (count > 2 && texts[1] == std::string("help") && *texts[2] != '-') {
    PrintHelp(texts[2]);
    return 0;
  }
  try {
    m_app.parse(count, texts);
  } catch (CLI::ParseError const& error) {
    return Explain(error);
  }
  if (m_run) {
    m_run(m_context);
  } else {
    PrintHelp("");
  }
  Spinner::Stop();
  return 0;
} catch (Failure const& failure) {
  return Told(failure.Code(), failure.what());
} catch (lumo::Error const& error) {
  return Told(ExitCodeOf(error), TextOf(error));
} catch (std::exception const& error) {
  return Told(ExitCode::ServerFault, error.what());
}

void CommandLine::PrintHelp(std::string const& command) {
  for (CLI::App const* const one : m_app.get_subcommands({})) {
    if (one->get_name() == command) {
      std::cout << one->help("lumo");
      return;
    }
  }
  if (!command.empty()) RefuseCommand(command);
  std::cout << m_app.help();
}

void CommandLine::RefuseCommand(std::string const& name) const {
  std::vector<std::string> names;
  for (CLI::App const* const one : m_app.get_subcommands({})) names.push_back(one->get_name());
  lumo::Hint hint{lumo::HintCode::DidYouMean, lumo::Alike(name, names)};
  if (hint.arguments.empty()) hint = {lumo::HintCode::OneOf, std::move(names)};
  Refuse("there is no command " + lumo::Quoted(name), std::move(hint));
}

std::string CommandLine::PlainText(CLI::ParseError const& error) const {
  auto const chosen = m_app.get_subcommands();
  std::vector<std::string> const unexpected = m_app.remaining(true);
  if (dynamic_cast<CLI::ExtrasError const*>(&error) != nullptr && !unexpected.empty()) {
    std::string const& text = unexpected.front();
    if (text.empty() || text[0] != '-') return lumo::Quoted(text) + " is one argument too many";
    std::vector<std::string> names;
    for (CLI::App const* const app : {&m_app, chosen.empty() ? &m_app : chosen.front()}) {
      for (CLI::Option const* const one : app->get_options()) {
        if (!one->get_lnames().empty()) names.push_back(one->get_lnames().front());
      }
    }
    std::string const name = text.substr(std::min(text.size(), text.find_first_not_of('-')));
    lumo::Hint hint{lumo::HintCode::DidYouMean, lumo::Alike(name, names)};
    for (std::string& one : hint.arguments) one.insert(0, "--");
    return "there is no option " + text + HintText(hint);
  }
  std::string text = error.what();
  std::string const excludes = " excludes ";
  std::size_t const between = text.find(excludes);
  if (dynamic_cast<CLI::ExcludesError const*>(&error) != nullptr && between != std::string::npos) {
    return text.replace(between, excludes.size(), " does not go together with ");
  }
  std::size_t const tooMany = text.find(": At Most 1 required");
  return tooMany == std::string::npos ? text : text.substr(0, tooMany) + " is given more than once";
}

int CommandLine::Explain(CLI::ParseError const& error) {
  if (error.get_exit_code() == 0) {  // help and version
    int const code = m_app.exit(error);
    bool const isVersion = dynamic_cast<CLI::CallForVersion const*>(&error) != nullptr;
    if (isVersion && m_app.count("--verbose") > 0) {
      std::cout << "vendor namespace: " << lumo::BuiltInNamespace() << '\n';
    }
    return code;
  }
  auto const chosen = m_app.get_subcommands();
  if (chosen.empty()) {
    for (std::string const& text : m_app.remaining()) {
      if (text.empty() || text[0] != '-') RefuseCommand(text);
    }
  }
  std::string const command = chosen.empty() ? "" : " " + chosen.front()->get_name();
  std::string const text = PlainText(error);
  bool const isHelped = text.back() == '?';
  return Told(ExitCode::Usage, text + (isHelped ? "" : "; see lumo" + command + " --help"));
}

void CommandLine::AddServerOptions() {
  ServerOptions& server = m_context.server;
  auto const text = [this](char const* name, std::string& value, char const* what,
                           char const* type) {
    return m_app.add_option(name, value, what)->type_name(type);
  };
  m_app.option_defaults()->group("Server");
  CLI::Option* const url = text("--url", server.server, "address of the server", "URL");
  CLI::Option* const profile =
      text("--server", server.server, "a server of ~/.config/lumo/servers.ini", "NAME")
          ->excludes(url);
  m_app
      .add_flag("--sandbox", server.useSandbox,
                "use a server with made-up data inside this command")
      ->excludes(url)
      ->excludes(profile);
  m_app
      .add_option_function<std::string>(
          "--sandbox-file",
          [&server](std::string const& file) {
            server.useSandbox = true;
            server.sandboxFile = file;
          },
          "like --sandbox, and keep its data in this file")
      ->type_name("FILE");
  text("--namespace", server.namespaceBase,
       "base of the server's namespaces, where it is not the built-in one", "URI")
      ->envname("LUMO_NAMESPACE_BASE");
  text("--user", server.user, "user to log on as", "NAME");
  text("--domain", server.domain, "domain of the user", "NAME");
  text("--password-file", server.passwordFile, "file whose first line is the password", "FILE");
  m_app.add_flag("--ticket", server.useTicket, "log on with the ticket of the current user");
  text("--ca-file", server.caFile, "certificates to trust, in PEM form", "FILE");
  text("--ca-folder", server.caFolder, "folder of such certificates under their hashed names",
       "FOLDER");
  text("--certificate", server.certificateFile, "your certificate and key, in PEM form", "FILE");
  text("--key", server.keyFile, "your key, where it is a file of its own", "FILE");
  text("--proxy", server.proxy, "address of a proxy", "URL");
  text("--proxy-user", server.proxyUser, "user to log on to the proxy as", "NAME");
  text("--proxy-password-file", server.proxyPasswordFile,
       "file whose first line is the password for the proxy", "FILE");
  m_app
      .add_option("--timeout", server.timeoutSeconds,
                  "longest silence of the server, 0 for any (300)")
      ->check(Between(0, 1'000'000))
      ->type_name("SECONDS");
  m_app
      .add_option("--retries", server.retries,
                  "how often a read is tried again when the server does not answer (4)")
      ->check(Between(0, 100))
      ->type_name("N");
  m_app.add_flag("-v,--verbose", server.isVerbose, "print the times of calls");
  m_app.add_flag("-q,--quiet", m_context.isQuiet, "print neither progress nor notes");
  m_app.option_defaults()->group("Options");
}

}  // namespace cli
