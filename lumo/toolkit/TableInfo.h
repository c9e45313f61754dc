#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Connection.h"
#include "lumo/toolkit/DatabaseInfo.h"
#include "lumo/toolkit/Units.h"

/// What is asked of a table again and again. Not installed.
namespace lumo {

LUMO_API std::vector<DatabaseInfo> DatabasesOf(Connection& connection);
/// By key or name; throws what `FindName` throws, as all that finds does here.
LUMO_API DatabaseInfo FindDatabase(Connection& connection, std::string const& keyOrName);
/// Names of the tables of the database with that key.
LUMO_API std::vector<std::string> TablesOf(Connection& connection, std::string const& dbKey);

/// A table, with what is known of it. Each part is asked for once, when it is first needed, by
/// whichever connection is at hand; several threads may ask at once.
class LUMO_API TableInfo {
 public:
  /// Finds the table by name.
  TableInfo(Connection& connection, std::string const& database, std::string const& table);
  ~TableInfo();
  TableInfo(TableInfo const&) = delete;
  TableInfo& operator=(TableInfo const&) = delete;

  std::string const& DatabaseKey() const { return m_database.key; }
  std::string const& DatabaseName() const { return m_database.name; }
  std::string const& Name() const { return m_name; }
  SmartPtr<TableReference> Reference() const;
  SmartPtr<PartialTableReference> Partial() const;

  /// In the server's order, with their parameters; without those that describe others.
  std::vector<Attribute> const& Attributes(Connection& connection) const;
  Attribute const& FindAttribute(Connection& connection, std::string const& name) const;
  /// For requests, of an attribute of this table.
  SmartPtr<AttributeReference> ReferenceTo(Attribute const& attribute) const;

  /// Names of the subsets.
  std::vector<std::string> const& Subsets(Connection& connection) const;
  /// The name of a subset as the server has it.
  std::string const& FindSubset(Connection& connection, std::string const& name) const;
  /// For requests, by the name that the server has.
  SmartPtr<SubsetReference> SubsetNamed(std::string const& name) const;
  /// Lets only the records of a subset through; null, which lets all through, for an empty name.
  SmartPtr<RecordFilter> FilterOf(Connection& connection, std::string const& subset) const;

  /// The server's factors for the units of the table's attributes, columns and parameters.
  Units const& KnownUnits(Connection& connection) const;
  /// Unit systems and currencies of the database.
  std::vector<std::string> const& UnitSystems(Connection& connection) const;
  std::vector<std::string> const& Currencies(Connection& connection) const;
  /// What becomes of the table's units in a unit system, a currency, or both; names may be empty.
  UnitSystem SystemOf(Connection& connection, std::string const& system,
                      std::string const& currency) const;

 private:
  struct Known;

  std::vector<std::string> UnitsOfAll(Connection& connection) const;
  void LoadSystems(Connection& connection) const;

  DatabaseInfo m_database;
  std::string m_name;
  SmartPtr<TableReference> m_reference;
  std::vector<SmartPtr<AttributeReference>> m_attributeReferences;
  std::unique_ptr<Known> m_known;
};

}  // namespace lumo
