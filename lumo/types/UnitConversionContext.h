#pragma once

#include <string>

#include "lumo/xml/FromXml.h"

/// The units in which values are wanted.
class LUMO_API UnitConversionContext : public lumo::FromXml<UnitConversionContext> {
 public:
  UnitConversionContext() = default;
  explicit UnitConversionContext(XmlNode<char> const* node);

  /// Name of the unit system; sent when not empty.
  std::string const& GetUnitSystem() const { return m_unitSystem; }
  void SetUnitSystem(std::string const& unitSystem) { m_unitSystem = unitSystem; }
  /// Code of the currency; sent when not empty.
  std::string const& GetCurrency() const { return m_currency; }
  void SetCurrency(std::string const& currency) { m_currency = currency; }
  /// Whether absolute units are wanted; sent once it has been set.
  bool GetAbsoluteUnits() const { return m_absoluteUnits; }
  void SetAbsoluteUnits(bool absoluteUnits) {
    m_absoluteUnits = absoluteUnits;
    m_absoluteUnitsSet = true;
  }
  /// Whether the flag was given a value, by the caller or by a reply.
  bool GetAbsoluteUnitsSet() const { return m_absoluteUnitsSet; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::string m_unitSystem;
  std::string m_currency;
  bool m_absoluteUnits = false;
  bool m_absoluteUnitsSet = false;
};
