#pragma once

#include <string>

#include "lumo/xml/FromXml.h"

/// A unit of measure of a database.
class LUMO_API UnitDetail : public lumo::FromXml<UnitDetail> {
 public:
  UnitDetail() = default;
  explicit UnitDetail(XmlNode<char> const* node);

  /// The unit in words.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }
  /// Such as "kg/m^3".
  std::string const& GetSymbol() const { return m_symbol; }
  void SetSymbol(std::string const& symbol) { m_symbol = symbol; }
  /// Whether the unit contains a currency, as in EUR/kg.
  bool GetHasCurrency() const { return m_hasCurrency; }
  void SetHasCurrency(bool hasCurrency) { m_hasCurrency = hasCurrency; }

 private:
  std::string m_name;
  std::string m_symbol;
  bool m_hasCurrency = false;
};
