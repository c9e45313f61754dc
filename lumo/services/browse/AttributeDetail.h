#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "lumo/services/browse/HelpInfo.h"
#include "lumo/services/browse/TabularColumnDetail.h"
#include "lumo/types/NamedAttribute.h"
#include "lumo/types/RevisionInfo.h"

/// Definition of an attribute.
class LUMO_API AttributeDetail : public lumo::FromXml<AttributeDetail, NamedAttribute> {
 public:
  /// Kinds of columns that are read; filled by library start-up, emptied by shut-down.
  static std::unordered_set<std::string> s_supportedColumns;
  static void StaticInit();

  AttributeDetail() = default;
  explicit AttributeDetail(XmlNode<char> const* node);

  /// Identity of the attribute; 0 when the reply gave none.
  int GetIdentity() const { return m_identity; }
  void SetIdentity(int identity) { m_identity = identity; }
  /// Type code, one of `AttributeTypes`.
  std::string const& GetType() const { return m_type; }
  void SetType(std::string const& type) { m_type = type; }
  /// Null when the reply gave none.
  SmartPtr<RevisionInfo> GetRevisionInfo() const { return m_revisionInfo; }
  void SetRevisionInfo(SmartPtr<RevisionInfo> const& revisionInfo) {
    m_revisionInfo = revisionInfo;
  }
  /// Null when the reply gave none.
  SmartPtr<HelpInfo> GetHelpInfo() const { return m_helpInfo; }
  void SetHelpInfo(SmartPtr<HelpInfo> const& helpInfo) { m_helpInfo = helpInfo; }
  /// Symbol of the unit in which values are stored; empty without one.
  std::string const& GetDatabaseUnit() const { return m_databaseUnit; }
  void SetDatabaseUnit(std::string const& databaseUnit) { m_databaseUnit = databaseUnit; }
  /// The limit that the server proposes for searches, as it writes it; empty without one.
  std::string const& GetDefaultThreshold() const { return m_defaultThreshold; }
  void SetDefaultThreshold(std::string const& defaultThreshold) {
    m_defaultThreshold = defaultThreshold;
  }
  /// The words that a discrete attribute allows, in order.
  std::vector<std::string>& AccessDiscreteValues() { return m_discreteValues; }
  std::vector<std::string> const& AccessDiscreteValues() const { return m_discreteValues; }
  void AddDiscreteValue(std::string const& text) { m_discreteValues.push_back(text); }
  /// Place of the attribute in its table.
  int GetOrder() const { return m_order; }
  void SetOrder(int order) { m_order = order; }
  /// Whether searches may have conditions on it.
  bool GetIsSearchable() const { return m_isSearchable; }
  void SetIsSearchable(bool isSearchable) { m_isSearchable = isSearchable; }
  /// Whether a record may have several values.
  bool GetIsMultiValued() const { return m_isMultiValued; }
  void SetIsMultiValued(bool isMultiValued) { m_isMultiValued = isMultiValued; }
  /// Whether charts may show it.
  bool GetIsChartable() const { return m_isChartable; }
  void SetIsChartable(bool isChartable) { m_isChartable = isChartable; }
  /// Name to put at the axis of a chart.
  std::string const& GetAxisName() const { return m_axisName; }
  void SetAxisName(std::string const& axisName) { m_axisName = axisName; }
  /// Columns of a tabular attribute. Those of an unknown kind are skipped, and all are while the
  /// library is not initialised.
  std::vector<SmartPtr<TabularColumnDetail>>& AccessColumns() { return m_columns; }
  std::vector<SmartPtr<TabularColumnDetail>> const& AccessColumns() const { return m_columns; }
  void AddColumn(SmartPtr<TabularColumnDetail> const& column) { m_columns.push_back(column); }

 private:
  int m_identity = 0;
  std::string m_type;
  SmartPtr<RevisionInfo> m_revisionInfo;
  SmartPtr<HelpInfo> m_helpInfo;
  std::string m_databaseUnit;
  std::string m_defaultThreshold;
  std::vector<std::string> m_discreteValues;
  int m_order = 0;
  bool m_isSearchable = false;
  bool m_isMultiValued = false;
  bool m_isChartable = false;
  std::string m_axisName;
  std::vector<SmartPtr<TabularColumnDetail>> m_columns;
};
