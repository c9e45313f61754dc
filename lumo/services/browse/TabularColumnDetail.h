#pragma once

#include <string>
#include <vector>

#include "lumo/types/RevisionInfo.h"
#include "lumo/xml/FromXml.h"

/// Definition of a column of a tabular attribute.
class LUMO_API TabularColumnDetail : public lumo::FromXml<TabularColumnDetail> {
 public:
  TabularColumnDetail() = default;
  explicit TabularColumnDetail(XmlNode<char> const* node);

  /// Heading of the column.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }
  /// Null when the reply gave none.
  SmartPtr<RevisionInfo> GetRevisionInfo() const { return m_revisionInfo; }
  void SetRevisionInfo(SmartPtr<RevisionInfo> const& revisionInfo) {
    m_revisionInfo = revisionInfo;
  }
  /// "local" for a column of the attribute itself, "target" for one of the linked records.
  std::string const& GetColumnType() const { return m_columnType; }
  void SetColumnType(std::string const& columnType) { m_columnType = columnType; }
  /// Symbol of the unit in which the cells are stored; empty without one.
  std::string const& GetDatabaseUnit() const { return m_databaseUnit; }
  void SetDatabaseUnit(std::string const& databaseUnit) { m_databaseUnit = databaseUnit; }
  /// The words that a discrete column allows.
  std::vector<std::string>& AccessDiscreteValues() { return m_discreteValues; }
  std::vector<std::string> const& AccessDiscreteValues() const { return m_discreteValues; }
  void AddDiscreteValue(std::string const& text) { m_discreteValues.push_back(text); }
  /// Type code of the cells, one of `AttributeTypes`.
  std::string const& GetType() const { return m_type; }
  void SetType(std::string const& type) { m_type = type; }
  /// Name of the column's element: "local", "target" or "unavailable".
  std::string const& GetKind() const { return m_kind; }

 private:
  std::string m_kind;
  std::string m_name;
  SmartPtr<RevisionInfo> m_revisionInfo;
  std::string m_columnType;
  std::string m_databaseUnit;
  std::vector<std::string> m_discreteValues;
  std::string m_type;
};
