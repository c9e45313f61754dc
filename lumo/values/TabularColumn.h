#pragma once

#include <array>
#include <string>

#include "lumo/platform/core/WeakPtr.h"
#include "lumo/xml/FromXml.h"

/// A column of tabular data.
class LUMO_API TabularColumn : public lumo::FromXml<TabularColumn>,
                               public lumo::WeakTarget<TabularColumn> {
 public:
  /// Where the cells come from: the table itself, or the records that its rows link to.
  enum eType : int {
    Local = 0,
    TargetAttribute = 1,
    TargetRecord = 2,
    TargetTabularColumn = 3,
    Unknown = 4
  };
  /// Words of the types 0 to 3.
  static std::array<std::string, 4> const TypeStrings;
  /// `Unknown` for an unknown word; case counts.
  static eType ParseType(std::string const& text);

  TabularColumn() = default;
  explicit TabularColumn(XmlNode<char> const* node);

  /// Heading of the column.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }
  /// One of `eType`.
  int GetColumnType() const { return m_columnType; }
  void SetColumnType(int type) { m_columnType = type; }

 private:
  std::string m_name;
  int m_columnType = Local;
};
