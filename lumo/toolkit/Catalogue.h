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
  std::string name = {};
  std::string guid = {};
  std::size_t attributes = 0;  ///< how many it has, those that describe others too
};
LUMO_API std::vector<TableEntry> TablesIn(Client const& client, std::string const& database);

/// A unit or a currency: its symbol or code, and its name.
struct UnitEntry {
  std::string symbol = {};
  std::string name = {};
};
LUMO_API std::vector<UnitEntry> UnitsIn(Client const& client, std::string const& database);
/// What figures of a unit can be converted into. Throws NotFound for a unit that there is not.
LUMO_API std::vector<UnitStep> ConversionsOf(Client const& client, std::string const& database,
                                             std::string const& unit);
/// Unit systems and currencies of a database.
struct UnitSystemEntries {
  std::vector<std::string> systems = {};
  std::vector<UnitEntry> currencies = {};
};
LUMO_API UnitSystemEntries UnitSystemsIn(Client const& client, std::string const& database);

/// The least and the largest value of an attribute: `std::int64_t`, `Quantity` or `DateTime`;
/// `std::monostate` where the server says none.
struct Extent {
  Value least = {};
  Value most = {};
};
/// Of all attributes of the table, in their order.
LUMO_API std::vector<Extent> ExtentsOf(Table const& table);

/// A record or a folder of the tree.
struct TreeEntry {
  RecordHead record = {};
  bool isFolder = false;
  int depth = 0;  ///< 0 for what lies directly below the beginning
};
/// Walks the tree below a folder, a folder before what is in it, not deeper than so many levels;
/// of the records only those of the subset for one that is not empty.
LUMO_API void WalkTree(Table const& table, std::string const& folder, std::string const& subset,
                       int levels, std::function<void(TreeEntry const&)> const& take);

/// A record that another one is linked to.
struct RecordLink {
  RecordHead from = {};
  std::string group = {};
  RecordHead to = {};  ///< without its folder
};
LUMO_API void ReadLinks(Selection const& records, ReadOptions const& options,
                        std::function<void(RecordLink const&)> const& take);

/// A program of the server that writes records in the form of another program.
struct ExporterInfo {
  std::string key = {};
  std::string name = {};
  int version = 0;
  std::string package = {};
  std::string description = {};
};
LUMO_API std::vector<ExporterInfo> ExportersOf(Table const& table);

/// What an exporter asks for.
struct ExporterParameterInfo {
  std::string name = {};
  std::string unit = {};
  std::string usage = {};               ///< what for, as the server says it
  std::string attribute = {};           ///< of which it is a parameter
  std::vector<std::string> words = {};  ///< those that there are
};
/// Of a record: what it takes depends on the curves that there are.
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
