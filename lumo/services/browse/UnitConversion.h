#pragma once

#include <string>
#include <vector>

#include "lumo/types/UnitConversionContext.h"
#include "lumo/xml/FromXml.h"

/// What turns figures of one unit into another: a factor and an offset. In which order the two
/// apply the reply does not say.
class LUMO_API Conversion : public lumo::FromXml<Conversion> {
 public:
  Conversion() = default;
  explicit Conversion(XmlNode<char> const* node);

  /// Empty where the conversions belong to one source unit, which then has the symbol.
  std::string const& GetSourceSymbol() const { return m_sourceSymbol; }
  void SetSourceSymbol(std::string const& sourceSymbol) { m_sourceSymbol = sourceSymbol; }
  /// Symbol of the unit in which the result is.
  std::string const& GetTargetSymbol() const { return m_targetSymbol; }
  void SetTargetSymbol(std::string const& targetSymbol) { m_targetSymbol = targetSymbol; }
  /// 0 when the reply does not say, as the offset.
  double GetFactor() const { return m_factor; }
  void SetFactor(double factor) { m_factor = factor; }
  /// Added after the factor: target = source * factor + offset.
  double GetOffset() const { return m_offset; }
  void SetOffset(double offset) { m_offset = offset; }

 private:
  std::string m_sourceSymbol;
  std::string m_targetSymbol;
  double m_factor = 0;
  double m_offset = 0;
};

/// The conversions into the units of one context.
class LUMO_API UnitConversion : public lumo::FromXml<UnitConversion> {
 public:
  UnitConversion() = default;
  explicit UnitConversion(XmlNode<char> const* node);

  /// Null when the reply named none.
  SmartPtr<UnitConversionContext> GetUnitConversionContext() const {
    return m_unitConversionContext;
  }
  void SetUnitConversionContext(SmartPtr<UnitConversionContext> const& unitConversionContext) {
    m_unitConversionContext = unitConversionContext;
  }
  std::vector<SmartPtr<Conversion>>& AccessConversions() { return m_conversions; }
  std::vector<SmartPtr<Conversion>> const& AccessConversions() const { return m_conversions; }
  void AddConversion(SmartPtr<Conversion> const& conversion) {
    m_conversions.push_back(conversion);
  }

 private:
  SmartPtr<UnitConversionContext> m_unitConversionContext;
  std::vector<SmartPtr<Conversion>> m_conversions;
};

/// The conversions of one unit.
class LUMO_API SourceUnit : public lumo::FromXml<SourceUnit> {
 public:
  SourceUnit() = default;
  explicit SourceUnit(XmlNode<char> const* node);

  /// Symbol of the unit.
  std::string const& GetSourceSymbol() const { return m_sourceSymbol; }
  void SetSourceSymbol(std::string const& sourceSymbol) { m_sourceSymbol = sourceSymbol; }
  std::vector<SmartPtr<Conversion>>& AccessConversions() { return m_conversions; }
  std::vector<SmartPtr<Conversion>> const& AccessConversions() const { return m_conversions; }
  void AddConversion(SmartPtr<Conversion> const& conversion) {
    m_conversions.push_back(conversion);
  }

 private:
  std::string m_sourceSymbol;
  std::vector<SmartPtr<Conversion>> m_conversions;
};
