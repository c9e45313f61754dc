#pragma once

#include <string>
#include <vector>

#include "lumo/services/browse/UnitDetail.h"
#include "lumo/xml/FromXml.h"

/// A database and its units.
class LUMO_API DatabaseUnits : public lumo::FromXml<DatabaseUnits> {
 public:
  DatabaseUnits() = default;
  explicit DatabaseUnits(XmlNode<char> const* node);

  /// Key of the database.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }
  std::vector<SmartPtr<UnitDetail>>& AccessUnits() { return m_units; }
  std::vector<SmartPtr<UnitDetail>> const& AccessUnits() const { return m_units; }
  void AddUnit(SmartPtr<UnitDetail> const& unit) { m_units.push_back(unit); }

 private:
  std::string m_dbKey;
  std::vector<SmartPtr<UnitDetail>> m_units;
};
