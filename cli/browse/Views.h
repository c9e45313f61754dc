#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/browse/Data.h"
#include "cli/browse/Server.h"
#include "cli/browse/ValueJson.h"

namespace cli::browse {

/// Parameters of an address.
using Query = std::multimap<std::string, std::string>;

/// The bytes of a file or picture.
struct Bytes {
  std::string name = {};
  std::string bytes = {};
  bool isPicture = false;
};

/// What the page asks for, each answered from the server's data. All throw `lumo::Error`; they may
/// be called from several threads at once.
class Views {
 public:
  /// `cancel` ends what is under way.
  Views(lumo::Client client, lumo::CancellationToken cancel)
      : m_client(std::move(client)), m_cancel(std::move(cancel)) {}

  /// Address, databases and their tables.
  Json Server() const;
  /// Attributes with least and most, subsets, unit systems and currencies: db, table, units,
  /// currency.
  Json Table(Query const& query) const;
  /// What is in a folder: db, table, folder (an identity; the top without it).
  Json Tree(Query const& query) const;
  /// Records that hold the words, or meet the condition, of "text": db, table. What looks like a
  /// condition, but is none, is looked for as words; when these find nothing, or it can only be
  /// meant as a condition, its fault is told.
  Json Search(Query const& query) const;
  /// Sheets of records: db, table, id (again for each), version (a GUID, of a single record),
  /// units, currency.
  Json Records(Query const& query) const;
  /// Names and folders of records: db, table, id (again for each).
  Json Heads(Query const& query) const;
  /// Links and versions of a record: db, table, id.
  Json Around(Query const& query) const;
  /// Figures of all records: db, table, attribute (again for each), units, currency, at (an object
  /// with what parameters shall be), anew.
  Json Columns(Query const& query) const;
  /// What a spreadsheet is to hold: db, table, id (again for each), where (a condition) or text
  /// (words), attribute (again for each), units, currency.
  WorkbookChoice Workbook(Query const& query) const;
  /// How far the reading of a table has come: db, table.
  Json Progress(Query const& query) const;
  /// db, table, id, version (a GUID), attribute.
  Bytes File(Query const& query) const;

 private:
  std::shared_ptr<TableData> TableOf(Query const& query) const;
  /// The table that has that record as the top of its tree; empty when none has.
  std::string TableWithTop(lumo::Connection& connection, std::string const& dbKey, int top) const;
  Json LinksOf(TableData const& table, int identity) const;

  lumo::Client m_client;
  lumo::CancellationToken m_cancel;
  mutable std::mutex m_mutex;
  mutable std::map<std::pair<std::string, std::string>, std::shared_ptr<TableData>> m_tables;
  mutable std::map<std::string, std::map<int, std::string>> m_tops;  ///< of the databases
};

/// The parameter of that name; throws `lumo::Error` (InvalidArgument) without it.
std::string Needed(Query const& query, std::string const& name);
std::string Optional(Query const& query, std::string const& name);
std::vector<std::string> All(Query const& query, std::string const& name);
/// "id" as a number; throws like `Needed`.
int IdentityIn(std::string const& text);

/// What went wrong, for the page. `advice` words what to do next.
Json JsonOf(lumo::Error const& error, std::string const& advice);

}  // namespace cli::browse
