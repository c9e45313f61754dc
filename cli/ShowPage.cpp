#include <cctype>
#include <memory>
#include <string>
#include <utility>

#include "cli/Failure.h"
#include "cli/Interrupt.h"
#include "cli/Options.h"
#include "cli/PassingFile.h"
#include "cli/Read.h"
#include "cli/browse/Command.h"

namespace cli {
namespace {

/// What to do next, as a sentence of its own.
std::string Advice(lumo::Error const& error) {
  std::string text = HintText(error.Hint());
  text.erase(0, text.find_first_not_of(";:. "));
  if (!text.empty()) text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
  return text;
}

std::string WorkbookOf(lumo::Client const& client, browse::WorkbookChoice const& what) {
  lumo::Table const table = client.OpenTable(what.database, what.table);
  ReadChoice choice;
  choice.ids = what.records;
  if (!what.where.empty()) choice.conditions = {what.where};
  choice.text = what.text;
  choice.attributes = what.attributes;
  choice.units = {what.unitSystem, what.currency};
  PassingFile const file;
  Context context;
  context.isQuiet = true;
  context.output.format = Format::Xlsx;
  context.output.file = file.Name();
  PutOutRecords(context, table, choice,
                {RowColumn::Kind::Identity, RowColumn::Kind::Folder, RowColumn::Kind::Name,
                 RowColumn::Kind::FullName},
                true);
  return file.Content();
}

void ShowPage(Context& context, browse::BrowseOptions const& options) {
  lumo::Client const client = context.Connect();
  browse::ServerOptions server;
  server.advice = Advice;
  server.workbook = [&client](browse::WorkbookChoice const& what) {
    return WorkbookOf(client, what);
  };
  browse::Run(
      client, options, [] { return Interrupts().IsCancelled(); }, std::move(server));
}

}  // namespace

void AddPage(CommandLine& line) {
  auto const options = std::make_shared<browse::BrowseOptions>();
  CLI::App& page =
      line.Add("browse", "show materials as a page in a browser",
               "  $ lumo browse --sandbox --open\n"
               "  $ lumo browse ENG_MATERIALS Materials --port 8080\n\n"
               "It prints an address with a token, without which the page shows nothing: give it\n"
               "to nobody. It serves this machine alone, until Ctrl-C.",
               [options](Context& context) { ShowPage(context, *options); });
  page.add_option("DATABASE", options->database, "key or name of the database to begin with")
      ->type_name("");
  page.add_option("TABLE", options->table, "name of the table to begin with")->type_name("");
  page.add_option("--port", options->port, "port of 127.0.0.1 to listen on, 0 for a free one (0)")
      ->check(Between(0, 65535))
      ->type_name("N");
  page.add_flag("--open", options->opens, "open the page in the browser, too");
  page.add_option("--idle", options->idleSeconds,
                  "end when nobody asked for anything for so long, 0 for never (0)")
      ->check(Between(0, 1'000'000))
      ->type_name("SECONDS");
}

}  // namespace cli
