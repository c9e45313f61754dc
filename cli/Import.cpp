#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "cli/ImportInput.h"
#include "cli/ImportReport.h"
#include "cli/Interrupt.h"
#include "cli/Options.h"
#include "cli/Progress.h"
#include "lumo/toolkit/Import.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

using Kind = lumo::RowVerdict::Kind;

struct ImportChoice : TableChoice {
  InputOptions input;
  bool isDryRun = false;
  bool makesFolders = false;
  bool keepsGoing = false;
  std::string journal;
  std::string resume;     ///< journal of the run that goes on
  std::string undo;       ///< journal of the run that is undone
  int resendAfter = 300;  ///< seconds
};

/// "new.csv.2026-03-17T093000.journal", beside the input.
std::string JournalFor(std::string const& file) {
  std::time_t const now = std::time(nullptr);
  std::tm parts{};
  gmtime_r(&now, &parts);
  char time[32];
  std::strftime(time, sizeof time, "%Y-%m-%dT%H%M%S", &parts);
  std::string const base = (file == "-" ? "lumo-import" : file) + "." + time;
  std::string name = base + ".journal";
  for (int i = 2; std::filesystem::exists(name); ++i) {
    name = base + "-" + std::to_string(i) + ".journal";
  }
  return name;
}

/// A file name as a shell takes it.
std::string ForShell(std::string const& text) {
  std::string quoted = "'";
  for (char const c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

/// What a run came to, as one line and the code with which the command ends.
class Outcome {
 public:
  Outcome(Context& context, lumo::ImportReport const& report)
      : m_context(context), m_report(report) {}

  /// Throws `Failure` unless all is well.
  void Tell(std::string const& done, std::string const& next) const {
    TellFaults(m_context, m_report);
    for (std::string const& folder : m_report.newFolders) {
      m_context.Note("new folder: " + OneLine(folder));
    }
    m_context.Note(done + Summary(m_report));
    if (m_report.isWritten && !next.empty()) m_context.Note(next);
    bool const isPart = m_report.Count(Kind::Create) + m_report.Count(Kind::Change) > 0 ||
                        (m_report.isWritten && !m_report.newFolders.empty());
    if (m_report.stopped) {
      lumo::Error const& error = *m_report.stopped;
      bool const isInterrupt = error.Code() == lumo::ErrorCode::Cancelled;
      bool const isOpen = std::any_of(m_report.rows.begin(), m_report.rows.end(), lumo::MayBeDone);
      bool const isLost = error.Code() == lumo::ErrorCode::OutcomeUnknown && !isOpen;
      ExitCode const nothing = isLost ? ExitCode::Transport : ExitCodeOf(error);
      throw Failure(isPart && !isInterrupt ? ExitCode::PartlyDone : nothing, TextOf(error));
    }
    if (m_report.IsComplete()) return;
    throw Failure(isPart && m_report.isWritten ? ExitCode::PartlyDone : ExitCode::Usage, "");
  }

 private:
  Context& m_context;
  lumo::ImportReport const& m_report;
};

lumo::ImportOptions OptionsOf(Context& context, ImportChoice const& choice, Progress& progress) {
  lumo::ImportOptions options;
  options.makesFolders = choice.makesFolders;
  options.keepsGoing = choice.keepsGoing;
  if (context.chunk > 0) options.chunkSize = static_cast<std::size_t>(context.chunk);
  options.source = choice.input.file;
  options.cancel = Interrupts();
  options.onProgress = [&progress](lumo::Progress const& at) { progress.Show(at); };
  return options;
}

void PutOutWhenWanted(Context const& context, lumo::ImportReport const& report, bool always) {
  bool const isWanted =
      always || !context.output.file.empty() || context.output.format != Format::Text;
  if (isWanted) PutOutRows(context.output, report);
}

/// The report of what `work` does with the options, which shows how far it has come; its rows are
/// put out when somebody wants them.
template <class Work>
lumo::ImportReport ReportOf(Context& context, ImportChoice const& choice, Work work) {
  Progress progress("records", context.isQuiet);
  lumo::ImportReport report = work(OptionsOf(context, choice, progress));
  progress.Clear();
  PutOutWhenWanted(context, report, choice.isDryRun);
  return report;
}

/// What can be done with a journal.
std::string NextStep(lumo::ImportReport const& report, std::string const& journal) {
  return (report.stopped ? "to go on: lumo import --resume " : "to undo it: lumo import --undo ") +
         ForShell(journal);
}

void GoOn(Context& context, ImportChoice const& choice) {
  lumo::Client const client = context.Connect();
  lumo::ImportReport const report =
      ReportOf(context, choice, [&](lumo::ImportOptions const& options) {
        return lumo::Import::Resume(client, choice.resume, options,
                                    std::chrono::seconds(choice.resendAfter));
      });
  Outcome(context, report).Tell("", NextStep(report, choice.resume));
}

void Undo(Context& context, ImportChoice const& choice) {
  lumo::Client const client = context.Connect();
  lumo::ImportReport const report =
      ReportOf(context, choice, [&](lumo::ImportOptions const& options) {
        return lumo::Import::Undo(client, choice.undo, options,
                                  std::chrono::seconds(choice.resendAfter));
      });
  for (std::string const& folder : report.newFolders) {
    context.Note("the folder " + lumo::Quoted(OneLine(folder)) + " stays");
  }
  lumo::ImportReport told = report;
  told.newFolders.clear();
  Outcome(context, told).Tell("undo: ", "");
}

void Import(Context& context, ImportChoice const& choice) {
  lumo::Client const client = context.Connect();  // asks for the password before the file is read
  lumo::Table const table = client.OpenTable(choice.database, choice.table);
  lumo::Import import = table.NewImport();
  Input const input = ReadInput(choice.input, table, import);
  bool const isFleeting = context.server.useSandbox && context.server.sandboxFile == ":memory:";
  std::string journal = choice.journal.empty() ? JournalFor(choice.input.file) : choice.journal;
  if (isFleeting && choice.journal.empty()) {
    journal = std::filesystem::temp_directory_path() /
              ("lumo-import-" + std::to_string(getpid()) + ".journal");
  }
  lumo::ImportReport const report =
      ReportOf(context, choice, [&](lumo::ImportOptions const& options) {
        return choice.isDryRun ? import.Preflight(options) : import.Run(journal, options);
      });
  std::string const faults = WriteFaults(choice.input.file, input, report);
  if (!faults.empty()) context.Note("the rows with faults are in " + faults);
  if (isFleeting && choice.journal.empty()) std::filesystem::remove(journal);
  if (isFleeting && report.isWritten) {
    context.Note("the sandbox's data end with this command; --sandbox-file FILE keeps them");
  }
  std::string const next = isFleeting ? "" : NextStep(report, journal);
  Outcome(context, report).Tell("", next);
}

void Run(Context& context, ImportChoice const& choice) {
  if (!choice.resume.empty()) return GoOn(context, choice);
  if (!choice.undo.empty()) return Undo(context, choice);
  if (choice.input.file.empty())
    Refuse("import takes DATABASE, TABLE and FILE; see lumo import --help");
  Import(context, choice);
}

}  // namespace

void AddImport(CommandLine& line) {
  auto const choice = std::make_shared<ImportChoice>();
  CLI::App& command = line.Add(
      "import", "make and change records",
      "  $ lumo import ENG_MATERIALS Materials new.csv --dry-run\n"
      "  $ lumo get ... -f ndjson | lumo import ENG_MATERIALS Materials -\n"
      "  $ lumo import --resume new.csv.2026-03-17T093000.journal\n"
      "  $ lumo import --undo new.csv.2026-03-17T093000.journal\n\n"
      "A sheet has a line of headings: Folder, Name, Full name, Identity, GUID and\n"
      "attributes such as \"Density [kg/m^3]\". A record that is there already is changed;\n"
      "an empty cell changes nothing. `lumo get` writes what this reads, and\n"
      "`lumo template` a sheet to fill in. In JSON a record may have links and subsets, too,\n"
      "as `lumo get --relations` writes them. When a row has a fault nothing is sent.",
      [choice](Context& context) { Run(context, *choice); });
  command.add_option("DATABASE", choice->database, "key or name of the database")->type_name("");
  command.add_option("TABLE", choice->table, "name of the table")->type_name("");
  command.add_option("FILE", choice->input.file, "CSV, JSON, NDJSON or xlsx; - for standard input")
      ->type_name("");
  CLI::Option* const dryRun = command.add_flag("-n,--dry-run", choice->isDryRun,
                                               "only say what would be done, and what is wrong");
  command.add_flag("--make-folders", choice->makesFolders, "make folders that are missing");
  command.add_flag("--keep-going", choice->keepsGoing,
                   "leave out rows with faults, and import the others");
  command.add_flag("--clear-nulls", choice->input.clearsNulls,
                   "null in JSON takes the value away, where the server can");
  command.add_option("--journal", choice->journal, "keep the journal in this file")
      ->type_name("FILE");
  CLI::Option* const resume =
      command
          .add_option("--resume", choice->resume, "continue the run that this journal belongs to")
          ->type_name("JOURNAL")
          ->excludes(dryRun);
  command
      .add_option("--undo", choice->undo, "write back the old values of the run of this journal")
      ->type_name("JOURNAL")
      ->excludes(resume)
      ->excludes(dryRun);
  command
      .add_option("--resend-after", choice->resendAfter,
                  "with --resume and --undo: how long the server may be at work on a call whose "
                  "reply nobody waited for (300)")
      ->check(Between(0, 86'400))
      ->type_name("SECONDS");
  command.add_option("--chunk", line.Shared().chunk, "records in a call (100)")
      ->check(Between(1, 100'000))
      ->type_name("N");
  AddOutput(command, line.Shared().output);
  command.get_option("--delimiter")
      ->description(
          "character between the cells of CSV, if the one that was found is wrong; with \";\" "
          "decimal commas are read")
      ->each([choice](std::string const& text) {
        choice->input.delimiter = text.size() == 1 ? text[0] : '\t';
      });
}

}  // namespace cli
