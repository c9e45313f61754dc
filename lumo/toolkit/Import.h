#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Options.h"

namespace lumo {

class Client;
class Table;
struct OpenedTable;

/// A text as somebody typed it: "2.8 to 2.9", "> 3", "~7.8 g/cm^3", "yes", "Good; Excellent",
/// "2026-03-17". What it means depends on the attribute.
struct TypedText {
  std::string text = {};  ///< as it was typed
  /// Of figures that have none behind them, such as a heading says it; empty for the attribute's.
  std::string unit = {};
  bool hasDecimalComma = false;  ///< "2,7" is a figure
};

/// What a row has for an attribute. Nothing and an empty text, list or table leave the record as it
/// is; `ImportRow::clears` takes values away.
struct ImportValue {
  std::string attribute = {};                   ///< name
  std::variant<Value, TypedText> content = {};  ///< plain, or as typed
};

/// The records to which a record is to be linked.
struct ImportLinks {
  std::string group = {};  ///< of links, by the name that it has on this record's side
  /// All of them, those that are there included: by name, as "Metals/Steels/C45", as "id:69", or by
  /// GUID. None takes all links of the group away.
  std::vector<std::string> records = {};
};

/// What is wrong with a row.
struct RowFault {
  std::string attribute = {};  ///< empty for the row as such
  std::string why = {};        ///< in words for people
};

/// A record to make or to change.
///
/// Which record it is, is told by `id` (a GUID, or an identity), or by folder and name, or by the
/// name alone when the table has it once, or once at its top. What is not there is made.
struct ImportRow {
  std::size_t number = 0;     ///< of the row in its source; 0 counts the rows from 1
  RecordId id = {};           ///< its `database` is of no matter
  std::string folder = {};    ///< "Metals/Steels"; empty: wherever the name is, or the top
  std::string name = {};      ///< that the tree shows
  std::string fullName = {};  ///< empty for that which the record has
  std::vector<ImportValue> values = {};  ///< for attributes; others keep what they have
  std::vector<std::string> clears = {};  ///< attributes whose values are to go
  std::vector<ImportLinks> links = {};   ///< groups that are not named stay as they are
  /// All subsets that the record is to be in; nothing leaves them as they are.
  std::optional<std::vector<std::string>> subsets = {};
  std::vector<RowFault> faults = {};  ///< found by whoever read the row
};

/// What becomes of a value.
struct ValueChange {
  std::string attribute = {};  ///< or "links: " with the group, or "subsets"
  std::string before = {};     ///< for people, in the attribute's unit; empty for none
  std::string after = {};      ///< likewise; empty for a value that goes
};

/// What is to become, or has become, of a row.
struct RowVerdict {
  /// What is done with the record.
  enum class Kind {
    Create,  ///< a record is made
    Change,
    Same,     ///< the record has all of it already; nothing is sent
    Refused,  ///< `faults` say why
    Waiting   ///< after a run that stopped: not sent, or `MayBeDone`
  };
  Kind kind = Kind::Same;                 ///< what is done
  std::size_t row = 0;                    ///< number of the row in the input
  RecordId id = {};                       ///< of the record; without identity when there is none
  std::string folder = {};                ///< path
  std::string name = {};                  ///< of the record
  std::vector<ValueChange> changes = {};  ///< value by value
  std::vector<RowFault> faults = {};      ///< why it is refused
  std::vector<std::string> notes = {};    ///< what a person might want to know
};

/// "create", "change", "same", "refused", "waiting".
LUMO_API char const* NameOf(RowVerdict::Kind kind);
/// Whether a row that waits was sent, and may have happened or not; a note says so, too.
LUMO_API bool MayBeDone(RowVerdict const& row);

/// What an import has done, or would do.
struct ImportReport {
  std::vector<RowVerdict> rows = {};  ///< in the order of the input
  /// Faults of the whole input, such as a heading that means nothing; nothing is sent then.
  std::vector<RowFault> faults = {};
  std::vector<std::string> newFolders = {};  ///< paths
  /// Why a run ended early; what was done is in the journal and can be resumed or undone.
  std::optional<Error> stopped = {};
  bool isWritten = false;  ///< false when only looked at: the preflight, or one that found faults

  /// How many rows have this verdict.
  LUMO_API std::size_t Count(RowVerdict::Kind kind) const;
  /// No faults, nothing waiting, and not stopped.
  LUMO_API bool IsComplete() const;
};

/// How an import is run.
struct ImportOptions {
  /// Folders that are missing are made; otherwise the rows for them are refused.
  bool makesFolders = false;
  /// Rows with faults, or which the server refuses, are left out; otherwise nothing is sent when a
  /// row has a fault, and the run ends behind the first chunk with a row that the server refuses.
  bool keepsGoing = false;
  std::size_t chunkSize = 100;    ///< records in a call
  std::size_t longestText = 255;  ///< characters of names and short texts; 0 for any
  std::string source = {};        ///< what the rows come from, for the journal
  /// How long after a request whose reply is missing the server may still be at work on it, so that
  /// the look-up that settles it waits.
  std::chrono::milliseconds settleAfter{3000};
  CancellationToken cancel = {};  ///< ends the run behind the chunk that is under way
  /// On the caller's thread, at each chunk.
  std::function<void(Progress const&)> onProgress = {};
};

/// Makes and changes records of a table:
///
///     lumo::Import import = table.NewImport();
///     import.Add("Metals/Steels", "C45", {{"Density", lumo::Quantity{7.85, "g/cm^3"}}});
///     lumo::ImportReport const report = import.Run("today.journal");
///
/// A row is looked at before anything is sent, and all faults of all rows are told at once. Each
/// chunk is written to a journal, a file, before it goes out. A run that was ended by whatever goes
/// on with `Resume` and makes nothing twice; `Undo` writes the old values back. See docs/import.md.
class LUMO_API Import {
 public:
  Import(Import&&) noexcept;
  Import& operator=(Import&&) noexcept;
  ~Import();

  /// Adds a row; or one of a folder's path, a name and values. What is wrong with it is told by
  /// `Preflight` and `Run`.
  Import& Add(ImportRow row);
  Import& Add(std::string const& folder, std::string const& name,
              std::vector<std::pair<std::string, Value>> const& values);

  /// Reads cells that begin with "{" or "[", which are not texts that people type; throws `Error`
  /// (InvalidArgument).
  using CellReader = std::function<Value(std::string const& text, Attribute const& attribute)>;
  /// How the cells of a sheet are read.
  struct SheetOptions {
    bool hasDecimalComma = false;  ///< "2,7" is a figure
    std::size_t headingRow = 1;    ///< its number; the others follow
    CellReader readCell = {};      ///< for cells with "{" or "["; without one they are faults
  };
  /// A sheet of texts. The headings are Folder, Name, Full name, Identity, GUID, and attributes
  /// with a unit perhaps: "Density [g/cm^3]" or "Density (g/cm^3)". Empty rows and empty columns at
  /// the end are of no matter. Asks for the table's attributes; throws `Error`.
  Import& AddSheet(std::vector<std::string> const& headings,
                   std::vector<std::vector<std::string>> const& rows, SheetOptions const& options);
  /// A fault of the whole input.
  void AddFault(RowFault fault);
  /// Rows so far.
  std::size_t Size() const;

  /// What a run would do, and all faults of all rows. Sends reads only. Throws `Error` when these
  /// fail.
  ImportReport Preflight(ImportOptions const& options = {}) const;
  /// Does it. `journal` must not exist yet, and is not made when there is nothing to send. Throws
  /// `Error` before something was sent; from then on the report says why it stopped.
  ImportReport Run(std::filesystem::path const& journal, ImportOptions const& options = {}) const;

  /// Goes on with a run that ended early, for whatever reason. First it looks up what came of the
  /// last request. Throws `Error` for a file that is not a journal, is in use, or belongs to
  /// another server.
  static ImportReport Resume(Client const& client, std::filesystem::path const& journal,
                             ImportOptions const& options = {});
  /// The same. What went out last and is not there may still be under way, and goes out again only
  /// when it is so old; until then the report is stopped (OutcomeUnknown), and says when to repeat
  /// this. The others take 5 minutes, the longest that a call may take.
  static ImportReport Resume(Client const& client, std::filesystem::path const& journal,
                             ImportOptions const& options, std::chrono::milliseconds resendAfter);
  /// Writes the old values of changed records back. A value that is not what the import wrote is
  /// left alone. Each row of the report that is `Refused` cannot be undone, records that were made
  /// among them, and says why; `Change` was undone now, `Same` needed nothing.
  static ImportReport Undo(Client const& client, std::filesystem::path const& journal,
                           ImportOptions const& options = {});
  /// The same; throws `Error` (OutcomeUnknown) while what went out last may still be under way.
  static ImportReport Undo(Client const& client, std::filesystem::path const& journal,
                           ImportOptions const& options, std::chrono::milliseconds resendAfter);

 private:
  friend class Table;
  struct Parts;
  explicit Import(std::shared_ptr<OpenedTable> table);

  std::unique_ptr<Parts> m_parts;
};

}  // namespace lumo
