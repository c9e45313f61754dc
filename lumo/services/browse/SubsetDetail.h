#pragma once

#include "lumo/types/NamedSubset.h"
#include "lumo/types/TableReference.h"

/// A subset with its table, as `GetSubsets` lists it.
class LUMO_API SubsetDetail : public lumo::FromXml<SubsetDetail, NamedSubset> {
 public:
  SubsetDetail() = default;
  explicit SubsetDetail(XmlNode<char> const* node);

  /// Null when the reply named no table.
  SmartPtr<TableReference> GetTable() const { return m_table; }
  void SetTable(SmartPtr<TableReference> const& table) { m_table = table; }

 private:
  SmartPtr<TableReference> m_table;
};
