#include "cli/ImportReport.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <utility>

#include "cli/Output.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

using Kind = lumo::RowVerdict::Kind;

constexpr std::size_t kToldFaults = 20;

std::string WhyOf(lumo::RowFault const& fault) {
  return (fault.attribute.empty() ? "" : fault.attribute + ": ") + fault.why;
}

std::string WhyOf(lumo::RowVerdict const& row) {
  std::string text;
  for (lumo::RowFault const& fault : row.faults) text += (text.empty() ? "" : "; ") + WhyOf(fault);
  return text;
}

/// What is worth knowing of a row that is taken.
std::string NotesOf(lumo::RowVerdict const& row) {
  std::string text;
  for (std::string const& note : row.notes) text += (text.empty() ? "note: " : "; ") + note;
  return text;
}

/// Faults of the whole input, then of rows, as people are told them.
std::vector<std::string> AllFaults(lumo::ImportReport const& report) {
  std::vector<std::string> faults;
  for (lumo::RowFault const& fault : report.faults) faults.push_back(WhyOf(fault));
  for (lumo::RowVerdict const& row : report.rows) {
    for (lumo::RowFault const& fault : row.faults) {
      faults.push_back("row " + std::to_string(row.row) + (fault.attribute.empty() ? ": " : ", ") +
                       WhyOf(fault));
    }
  }
  return faults;
}

}  // namespace

void PutOutRows(OutputOptions const& options, lumo::ImportReport const& report) {
  PutOut(options,
         {"row", "what", "identity", "folder", "name", "attribute", "before", "after", "why"},
         [&](TableWriter& out) {
           for (std::string const& folder : report.newFolders) {
             out.Add({"", "new folder", "", folder, "", "", "", "", ""});
           }
           for (lumo::RowVerdict const& row : report.rows) {
             Json const identity = row.id.identity == 0 ? Json("") : Json(row.id.identity);
             auto const add = [&](std::string const& attribute, std::string const& before,
                                  std::string const& after, std::string const& why) {
               out.Add({row.row, lumo::NameOf(row.kind), identity, row.folder, row.name, attribute,
                        before, after, why});
             };
             for (lumo::RowFault const& fault : row.faults) add(fault.attribute, "", "", fault.why);
             if (row.kind == Kind::Refused && !row.faults.empty()) continue;
             std::string notes = NotesOf(row);
             for (lumo::ValueChange const& one : row.changes) {
               add(one.attribute, one.before, one.after, std::exchange(notes, {}));
             }
             if (row.changes.empty()) add("", "", "", notes);
           }
         });
}

void TellFaults(Context const& context, lumo::ImportReport const& report) {
  std::vector<std::string> const faults = AllFaults(report);
  for (std::size_t i = 0; i < faults.size() && i < kToldFaults; ++i) {
    std::cerr << "lumo: " << OneLine(faults[i]) << '\n';
  }
  if (faults.size() > kToldFaults) {
    context.Note("... and " + Count(faults.size() - kToldFaults, "more fault"));
  }
}

std::string WriteFaults(std::string const& file, Input const& input,
                        lumo::ImportReport const& report) {
  std::map<std::size_t, std::string> why;
  for (lumo::RowVerdict const& row : report.rows) {
    if (!row.faults.empty()) why[row.row] = WhyOf(row);
  }
  if (why.empty() || file == "-") return "";
  std::string name = file + ".faults.csv";
  Sink sink(name);
  if (input.sheet.empty()) {
    sink.Write(CsvLine({"row", "why"}));
    for (auto const& [row, text] : why) sink.Write(CsvLine({std::to_string(row), text}));
  } else {
    std::vector<std::string> headings = input.sheet.front();
    headings.insert(headings.begin(), "why");
    sink.Write(CsvLine(headings, input.delimiter));
    for (auto const& [row, text] : why) {
      if (row == 0 || row > input.sheet.size()) continue;
      std::vector<std::string> cells = input.sheet[row - 1];
      cells.insert(cells.begin(), text);
      sink.Write(CsvLine(cells, input.delimiter));
    }
  }
  sink.Finish();
  return name;
}

std::string Summary(lumo::ImportReport const& report) {
  struct Words {
    Kind kind;
    char const* done;
    char const* toDo;
  };
  constexpr Words kWords[] = {{Kind::Create, "created", "to create"},
                              {Kind::Change, "changed", "to change"},
                              {Kind::Same, "as they were", "as they are"},
                              {Kind::Refused, "refused", "with faults"},
                              {Kind::Waiting, "not sent", "not sent"}};
  auto const open = static_cast<std::size_t>(
      std::count_if(report.rows.begin(), report.rows.end(), lumo::MayBeDone));
  std::string text;
  auto const add = [&text](std::size_t count, char const* what) {
    if (count > 0) text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + what;
  };
  for (Words const& words : kWords) {
    bool const mayBeOpen = words.kind == Kind::Waiting;
    std::size_t const count = report.Count(words.kind) - (mayBeOpen ? open : 0);
    add(count, report.isWritten ? words.done : words.toDo);
  }
  add(open, "may be done or not");
  return (text.empty() ? "no rows" : text) + (report.isWritten ? "" : "; nothing was written");
}

}  // namespace cli
