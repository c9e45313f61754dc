#pragma once

#include <string>

#include "lumo/values/IDataValue.h"

/// What points and ranges share: a unit, and whether the figures are estimated.
class LUMO_API UnittedRealDataType : public IDataValue {
 public:
  UnittedRealDataType() = default;
  explicit UnittedRealDataType(XmlNode<char> const* node);

  /// Symbol of the unit in which the figures stand, such as "MPa"; empty without one.
  std::string const& GetUnitSymbol() const { return m_unitSymbol; }
  void SetUnitSymbol(std::string const& symbol) { m_unitSymbol = symbol; }
  /// Whether the figures are estimates.
  bool GetEstimated() const { return m_estimated; }
  void SetEstimated(bool estimated) { m_estimated = estimated; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  bool m_estimated = false;
  std::string m_unitSymbol;
};
