#pragma once

#include <string>

#include "lumo/xml/FromXml.h"

/// A unit of measure as values and parameters carry it.
class LUMO_API UnitInformation : public lumo::FromXml<UnitInformation> {
 public:
  UnitInformation() = default;
  explicit UnitInformation(XmlNode<char> const* node);

  /// The unit in words.
  std::string const& GetUnitName() const { return m_unitName; }
  void SetUnitName(std::string const& name) { m_unitName = name; }
  /// Such as "MPa".
  std::string const& GetUnitSymbol() const { return m_unitSymbol; }
  void SetUnitSymbol(std::string const& symbol) { m_unitSymbol = symbol; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::string m_unitName;
  std::string m_unitSymbol;
};
