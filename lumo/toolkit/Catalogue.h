#pragma once

#include <functional>
#include <string>
#include <vector>

#include "lumo/toolkit/Client.h"

/// What there is on a server beside values: tables, folders, units, links and exporters. All
/// functions throw `Error`.
namespace lumo {

/// A table, as lists show it.
struct TableEntry {
  std::string name = {};       ///< as people see it
  std::string guid = {};       ///< the same on every server
  std::size_t attributes = 0;  ///< how many it has, those that describe others too
};
/// The tables of a database. Throws `Error`, as all functions here.
LUMO_API std::vector<TableEntry> TablesIn(Client const& client, std::string const& database);

/// A unit or a currency: its symbol or code, and its name.
struct UnitEntry {
  std::string symbol = {};  ///< such as "MPa", or "EUR"
  std::string name = {};    ///< in words
};
/// The units of a database.
LUMO_API std::vector<UnitEntry> UnitsIn(Client const& client, std::string const& database);
/// What figures of a unit can be converted into. Throws NotFound for a unit that there is not.
LUMO_API std::vector<UnitStep> ConversionsOf(Client const& client, std::string const& database,
                                             std::string const& unit);
/// Unit systems and currencies of a database.
struct UnitSystemEntries {
  std::vector<std::string> systems = {};   ///< names, such as "SI"
  std::vector<UnitEntry> currencies = {};  ///< codes and names
};
/// The unit systems and currencies of a database.
LUMO_API UnitSystemEntries UnitSystemsIn(Client const& client, std::string const& database);

/// The least and the largest value of an attribute: `std::int64_t`, `Quantity` or `DateTime`;
/// `std::monostate` where the server says none.
struct Extent {
  Value least = {};  ///< as all records of the table have it
  Value most = {};   ///< likewise
};
/// Of all attributes of the table, in their order.
LUMO_API std::vector<Extent> ExtentsOf(Table const& table);

/// A record or a folder of the tree.
struct TreeEntry {
  RecordHead record = {};  ///< its name and place
  bool isFolder = false;   ///< holds other records
  int depth = 0;           ///< 0 for what lies directly below the beginning
};
/// Walks the tree below a folder, a folder before what is in it, not deeper than so many levels;
/// of the records only those of the subset for one that is not empty.
LUMO_API void WalkTree(Table const& table, std::string const& folder, std::string const& subset,
                       int levels, std::function<void(TreeEntry const&)> const& take);

/// A record that another one is linked to.
struct RecordLink {
  RecordHead from = {};    ///< the record that was looked at
  std::string group = {};  ///< name of the link group
  RecordHead to = {};      ///< without its folder
};
/// Hands over the links of the records one by one. Throws `Error`.
LUMO_API void ReadLinks(Selection const& records, ReadOptions const& options,
                        std::function<void(RecordLink const&)> const& take);

/// A program of the server that writes records in the form of another program.
struct ExporterInfo {
  std::string key = {};          ///< by which requests name it
  std::string name = {};         ///< that people see
  int version = 0;               ///< the larger is the newer one
  std::string package = {};      ///< of programs for which it writes
  std::string description = {};  ///< in words for people
};
/// The exporters of a table that the server has.
LUMO_API std::vector<ExporterInfo> ExportersOf(Table const& table);

/// What an exporter asks for.
struct ExporterParameterInfo {
  std::string name = {};                ///< as the exporter has it
  std::string unit = {};                ///< in which a figure is wanted; empty for none
  std::string usage = {};               ///< what for, as the server says it
  std::string attribute = {};           ///< of which it is a parameter
  std::vector<std::string> words = {};  ///< those that there are
};
/// Of a record: what it takes depends on the curves that there are. Of the first records of the
/// table together when none is named.
LUMO_API std::vector<ExporterParameterInfo> ExporterParametersOf(Table const& table,
                                                                 std::string const& exporter,
                                                                 std::string const& record);
/// What the exporter writes for the records. Throws NotFound for an exporter that there is not;
/// of the options it takes the unit system, the currency and the token.
LUMO_API std::string RunExporter(Table const& table, std::string const& exporter,
                                 std::vector<RecordId> const& records,
                                 std::vector<Parameter> const& parameters,
                                 ReadOptions const& options = {});

}  // namespace lumo
