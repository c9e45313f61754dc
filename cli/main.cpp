#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <memory>

#include "cli/Commands.h"
#include "cli/InnerSandbox.h"
#include "cli/Interrupt.h"
#include "cli/Text.h"

namespace cli {

namespace {

constexpr char kEnvironment[] = R"(Environment:
  LUMO_URL            address of the server, like --url
  LUMO_USER           like --user
  LUMO_PASSWORD       the password
  LUMO_PASSWORD_FILE  like --password-file
  LUMO_NAMESPACE_BASE like --namespace
  NO_COLOR            no headings in bold

Exit status:
  0 done, 1 the server reports a fault, 2 wrong usage, 3 log-on refused, 4 no reply,
  5 partly done, 6 the reply is not understood, 130 interrupted)";

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

constexpr std::size_t kLongestMessage = 500;

/// Tells of a failure in one line, whatever the texts of users and servers in it; gives the code.
int Told(ExitCode code, std::string const& message) {
  std::string const line = OneLine(message);
  if (!line.empty()) std::cerr << "lumo: " << line.substr(0, kLongestMessage) << '\n';
  return static_cast<int>(code);
}

/// Gives a standard stream that is closed to the null device, for reading only, lest data go to
/// whatever is opened in its place.
void FillStandardStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDONLY) < 0) std::abort();
  }
}

/// An empty text is no choice, and mostly the mistake of a script.
CLI::Validator NotEmpty() {
  return CLI::Validator(
      [](std::string const& text) { return text.empty() ? std::string("is empty") : ""; }, "");
}

/// A range that help texts do not repeat.
CLI::Validator Between(int least, int most) { return CLI::Range(least, most).description(""); }

/// The command line and what it says.
class CommandLine {
 public:
  CommandLine() {
    m_app.formatter(std::make_shared<HelpFormatter>());
    m_app.get_formatter()->column_width(32);
    m_app.get_formatter()->label("Positionals", "Arguments");
    m_app.set_version_flag("--version", "lumo " LUMO_CLI_VERSION,
                           "print the version, with -v what it was built with");
    m_app.set_help_flag("-h,--help", "print this");
    m_app.fallthrough();
    m_app.footer(kEnvironment);
    AddServerOptions();
    AddCommands();
  }

  /// Runs the command; throws `Failure`, and CLI::Error for what is printed or misused.
  void Run(int count, char** texts) {
    m_app.parse(count, texts);
    if (!m_run) throw UsageFailure("no command; see lumo --help");
    ServerOptions& server = m_context.server;
    bool const isUnnamed = server.url.empty();
    if (!server.useSandbox && isUnnamed) {
      throw UsageFailure("no server: give --url or set LUMO_URL, or try --sandbox");
    }
    CheckNamespace(server.namespaceBase);
    std::unique_ptr<InnerSandbox> sandbox;
    if (server.useSandbox) {
      server.user.clear();  // it wants none
      sandbox = std::make_unique<InnerSandbox>(server.sandboxFile, server.namespaceBase);
      server.url = sandbox->Url();
    }
    CheckUrl(server.url);
    kpxtkLumoServiceLayer::Initialize();
    m_run();
    kpxtkLumoServiceLayer::Shutdown();
  }

  int Explain(CLI::ParseError const& error) {
    if (error.get_exit_code() == 0) {  // help and version
      int const code = m_app.exit(error);
      bool const isVersion = dynamic_cast<CLI::CallForVersion const*>(&error) != nullptr;
      if (isVersion && m_app.count("--verbose") > 0) {
        std::cout << "vendor namespace: " << LumoSession::GetVendorNamespaceBase() << '\n';
      }
      return code;
    }
    return Told(ExitCode::Usage, std::string(error.what()) + "; see lumo --help");
  }

 private:
  void AddServerOptions() {
    ServerOptions& server = m_context.server;
    m_app.option_defaults()->group("Server");
    m_app.add_option("--url", server.url, "address of the server")
        ->envname("LUMO_URL")
        ->type_name("URL");
    m_app.add_flag("--sandbox", server.useSandbox,
                   "use a server with made-up data inside this command");
    m_app
        .add_option_function<std::string>(
            "--sandbox-file",
            [&server](std::string const& file) {
              server.useSandbox = true;
              server.sandboxFile = file;
            },
            "like --sandbox, and keep its data in this file")
        ->type_name("FILE");
    m_app
        .add_option("--namespace", server.namespaceBase,
                    "base of the server's namespaces, where it is not the built-in one")
        ->envname("LUMO_NAMESPACE_BASE")
        ->type_name("URI");
    m_app.add_option("--user", server.user, "user to log on as")
        ->envname("LUMO_USER")
        ->type_name("NAME");
    m_app.add_option("--domain", server.domain, "domain of the user")->type_name("NAME");
    m_app
        .add_option("--password-file", server.passwordFile, "file whose first line is the password")
        ->envname("LUMO_PASSWORD_FILE")
        ->type_name("FILE");
    m_app.add_flag("--ticket", server.useTicket, "log on with the ticket of the current user");
    m_app.add_option("--ca-file", server.caFile, "certificates to trust, in PEM form")
        ->type_name("FILE");
    m_app.add_option("--proxy", server.proxy, "address of a proxy")->type_name("URL");
    m_app
        .add_option("--timeout", server.timeoutSeconds,
                    "longest silence of the server, 0 for any (300)")
        ->check(Between(0, 1'000'000))
        ->type_name("SECONDS");
    m_app.add_flag("-v,--verbose", server.isVerbose, "print the times of calls");
    m_app.add_flag("-q,--quiet", m_context.isQuiet, "print neither progress nor notes");
    m_app.option_defaults()->group("Options");
  }

  CLI::App* Add(char const* name, char const* what, char const* examples,
                std::function<void()> run) {
    CLI::App* const command = m_app.add_subcommand(name, what);
    command->footer(std::string("The options that choose the server stand in lumo --help.\n\n"
                                "Examples:\n") +
                    examples);
    command->callback([this, run = std::move(run)] { m_run = run; });
    return command;
  }

  void AddOutput(CLI::App* command, bool withPlot = false) {
    std::map<std::string, Format> formats = {{"text", Format::Text},
                                             {"csv", Format::Csv},
                                             {"json", Format::JsonArray},
                                             {"ndjson", Format::NdJson}};
    if (withPlot) formats["plot"] = Format::Plot;
    std::string const names = withPlot ? "text, csv, json, ndjson, or plot, which draws curves"
                                       : "text, csv, json or ndjson";
    auto const choose = [this, formats, names](std::string const& word) {
      auto const found = formats.find(word);
      if (found == formats.end()) throw CLI::ValidationError("--format takes " + names);
      m_context.output.format = found->second;
    };
    command->add_option_function<std::string>("-f,--format", choose, names + " (text)")
        ->type_name("FORMAT");
    AddFile(command);
    command->add_flag("--no-headings", m_context.output.isBare, "leave the headings out");
  }

  void AddFile(CLI::App* command) {
    command
        ->add_option("-o,--output", m_context.output.file,
                     "write to this file instead of standard output")
        ->type_name("FILE");
  }

  static void AddTable(CLI::App* command, std::string& database, std::string& table) {
    command->add_option("DATABASE", database, "key or name of the database")
        ->required()
        ->type_name("");
    command->add_option("TABLE", table, "name of the table")->required()->type_name("");
  }

  static void AddConditions(CLI::App* command, Selection& what) {
    command->add_option("-t,--text", what.text, "records that hold these words")
        ->type_name("TEXT")
        ->check(NotEmpty());
    command
        ->add_option("-w,--where", what.conditions,
                     "records that meet a condition; given again, all must be met")
        ->type_name("CONDITION")
        ->allow_extra_args(false);
    command->add_option("--subset", what.subset, "records of a subset")
        ->type_name("NAME")
        ->check(NotEmpty());
  }

  static void AddSelection(CLI::App* command, Selection& what) {
    AddTable(command, what.database, what.table);
    CLI::Option* const records =
        command
            ->add_option("RECORD", what.records,
                         "short or full name, #identity or GUID of a record")
            ->type_name("");
    command->add_option("--folder", what.folder, "records below a folder, \"/\" between the names")
        ->type_name("PATH")
        ->check(NotEmpty());
    AddConditions(command, what);
    for (char const* const choice : {"--folder", "--text", "--where", "--subset"}) {
      records->excludes(command->get_option(choice));
    }
  }

  template <class Options>
  static void AddUnits(CLI::App* command, Options& options) {
    command->add_option("--unit-system", options.unitSystem, "convert units into this system")
        ->type_name("NAME");
    command->add_option("--currency", options.currency, "convert prices into this currency")
        ->type_name("CODE");
  }

  void AddCommands() {
    AddBrowsing();
    AddSearching();
    auto* import = Add("import", "make and change records",
                       "  $ lumo import ENG_MATERIALS Materials new.csv --dry-run\n"
                       "  $ lumo get ... -f ndjson | lumo import ENG_MATERIALS Materials -\n\n"
                       "A CSV file has a line of headings: Folder, Name, Full name and attributes\n"
                       "such as \"Density [kg/m^3]\". A record that is there already is changed;\n"
                       "an empty cell changes nothing. `lumo get` writes what this reads.",
                       [this] { Import(m_context, m_import); });
    AddTable(import, m_import.database, m_import.table);
    import->add_option("FILE", m_import.file, "CSV, JSON or NDJSON; - for standard input")
        ->required()
        ->type_name("");
    import->add_flag("-n,--dry-run", m_import.isDryRun, "only say what would be done");
    AddChunk(import);
    AddOutput(import);

    auto* exporting = Add("export", "run an exporter of the server",
                          "  $ lumo export ENG_MATERIALS Materials\n"
                          "  $ lumo export ENG_MATERIALS Materials AW-6061-T6 -e card-2\n\n"
                          "Without --exporter it lists the exporters.",
                          [this] { Export(m_context, m_export); });
    AddSelection(exporting, m_export.what);
    exporting->add_option("-e,--exporter", m_export.exporter, "key of the exporter")
        ->type_name("KEY");
    exporting
        ->add_option("-p,--parameter", m_export.parameters,
                     "value of a parameter, \"Temperature=100 degC\"; may be given again")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    AddUnits(exporting, m_export);
    AddOutput(exporting);

    auto* probe = Add("probe", "say what the server answers at each stage",
                      "  $ lumo probe --url https://server/service_layer --user me",
                      [this] { Probe(m_context); });
    AddOutput(probe);
  }

  void AddBrowsing() {
    AddOutput(Add("databases", "list the databases", "  $ lumo databases --sandbox",
                  [this] { ListDatabases(m_context); }));

    auto* tables = Add("tables", "list the tables of a database", "  $ lumo tables ENG_MATERIALS",
                       [this] { ListTables(m_context, m_units.database); });
    tables->add_option("DATABASE", m_units.database, "key or name of the database")
        ->required()
        ->type_name("");
    AddOutput(tables);

    auto* tree = Add("tree", "print the record tree of a table",
                     "  $ lumo tree ENG_MATERIALS Materials --depth 2\n"
                     "  $ lumo tree ENG_MATERIALS Materials --folder \"Polymers/Thermoplastics\"",
                     [this] { PrintTree(m_context, m_tree); });
    AddTable(tree, m_tree.from.database, m_tree.from.table);
    tree->add_option("--folder", m_tree.from.folder, "begin here, \"/\" between the names")
        ->type_name("PATH")
        ->check(NotEmpty());
    tree->add_option("--subset", m_tree.from.subset, "records of a subset")
        ->type_name("NAME")
        ->check(NotEmpty());
    tree->add_option("--depth", m_tree.depth, "levels to print")
        ->check(Between(1, 1'000'000))
        ->type_name("N");
    AddOutput(tree);

    auto* attributes = Add("attributes", "list the attributes of a table",
                           "  $ lumo attributes ENG_MATERIALS Materials",
                           [this] { ListAttributes(m_context, m_table); });
    AddTable(attributes, m_table.database, m_table.table);
    AddOutput(attributes);

    auto* units = Add("units", "list units, their conversions, or unit systems",
                      "  $ lumo units ENG_MATERIALS\n"
                      "  $ lumo units ENG_MATERIALS --from MPa\n"
                      "  $ lumo units ENG_MATERIALS --systems",
                      [this] { ListUnits(m_context, m_units); });
    units->add_option("DATABASE", m_units.database, "key or name of the database")
        ->required()
        ->type_name("");
    units->add_option("--from", m_units.from, "what this unit converts into")->type_name("UNIT");
    units->add_flag("--systems", m_units.systems, "unit systems and currencies")
        ->excludes("--from");
    AddOutput(units);

    auto* links = Add("links", "list the records that records are linked to",
                      "  $ lumo links ENG_MATERIALS Materials AW-6061-T6",
                      [this] { ListLinks(m_context, m_links); });
    AddSelection(links, m_links);
    AddOutput(links);
  }

  void AddSearching() {
    constexpr char kConditions[] =
        "\nConditions:\n"
        "  ATTRIBUTE < NUMBER [UNIT]     also with <=, >, >= and =, and with dates\n"
        "  ATTRIBUTE between A and B [UNIT]\n"
        "                                the ends count\n"
        "  ATTRIBUTE = WORD|WORD         has any of the words; of yes or no: = yes\n"
        "  ATTRIBUTE contains TEXT       of a table: ATTRIBUTE[COLUMN] contains TEXT\n"
        "  ATTRIBUTE lacks TEXT          does not contain it\n"
        "  ATTRIBUTE exists              has a value\n"
        "  ATTRIBUTE is missing          has none";
    static std::string const searchExamples =
        std::string(
            "  $ lumo search ENG_MATERIALS Materials -t \"aircraft\"\n"
            "  $ lumo search ENG_MATERIALS Materials -w \"density < 3000 kg/m^3\"\n") +
        kConditions;
    auto* search = Add("search", "find records by text, name or conditions", searchExamples.c_str(),
                       [this] { Search(m_context, m_search); });
    AddTable(search, m_search.what.database, m_search.what.table);
    search->add_option("-n,--name", m_search.name, "records with this short or full name")
        ->type_name("NAME");
    AddConditions(search, m_search.what);
    search->get_option("--name")->excludes(search->get_option("--text"));
    search->get_option("--name")->excludes(search->get_option("--where"));
    AddOutput(search);

    static std::string const getExamples =
        std::string(
            "  $ lumo get ENG_MATERIALS Materials AW-6061-T6 -a Density -a Price\n"
            "  $ lumo get ENG_MATERIALS Materials -w \"density < 2 g/cm^3\" -f csv\n"
            "  $ lumo get ENG_MATERIALS Materials 304 -f plot\n") +
        kConditions;
    auto* get = Add("get", "print values of records; of the whole table without a choice",
                    getExamples.c_str(), [this] { Get(m_context, m_get); });
    AddSelection(get, m_get.what);
    get->add_option("-a,--attribute", m_get.attributes,
                    "attribute to print, once for each; all by default")
        ->type_name("NAME")
        ->allow_extra_args(false);
    AddUnits(get, m_get);
    get->add_flag("--no-files", m_get.withoutFiles, "addresses instead of files and pictures");
    get->add_option("-j,--jobs", m_context.jobs, "connections to read over (4)")
        ->check(Between(1, 64))
        ->type_name("N");
    AddChunk(get);
    AddOutput(get, true);
  }

  void AddChunk(CLI::App* command) {
    command->add_option("--chunk", m_context.chunk, "records in a call (100)")
        ->check(Between(1, 100'000))
        ->type_name("N");
  }

  CLI::App m_app{"Command for materials-information database servers", "lumo"};
  std::function<void()> m_run;
  Context m_context;
  Selection m_table;
  Selection m_links;
  TreeOptions m_tree;
  UnitsOptions m_units;
  SearchOptions m_search;
  GetOptions m_get;
  ImportOptions m_import;
  ExportOptions m_export;
};

}  // namespace
}  // namespace cli

int main(int count, char** texts) try {
  cli::FillStandardStreams();
  cli::CatchInterrupts();
  cli::CommandLine line;
  try {
    line.Run(count, texts);
  } catch (CLI::ParseError const& error) {
    return line.Explain(error);
  }
  return 0;
} catch (cli::Failure const& failure) {
  return cli::Told(failure.Code(), failure.what());
} catch (std::exception const& error) {
  return cli::Told(cli::ExitCode::ServerFault, error.what());
}
