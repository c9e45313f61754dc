#pragma once

#include <string>

#include "lumo/types/AttributeReference.h"
#include "lumo/xml/FromXml.h"

/// A smallest or largest value: a date, a real or an integer.
class LUMO_API MinMaxValue : public lumo::FromXml<MinMaxValue> {
 public:
  /// Which of the three a value is.
  enum eMinMaxType : int { None = 0, Date = 1, Double = 2, Integer = 3 };

  MinMaxValue() = default;
  explicit MinMaxValue(XmlNode<char> const* node);

  /// Which of the three the value is; `None` when the reply gave none of them.
  eMinMaxType GetType() const { return m_type; }
  /// The date, for a value of that type; setting it makes it one, as with the others.
  std::string const& GetDate() const { return m_date; }
  void SetDate(std::string const& date) {
    m_date = date;
    m_type = Date;
  }
  /// The real, for a value of that type.
  double GetDouble() const { return m_double; }
  void SetDouble(double value) {
    m_double = value;
    m_type = Double;
  }
  /// The integer, for a value of that type.
  int GetInteger() const { return m_integer; }
  void SetInteger(int value) {
    m_integer = value;
    m_type = Integer;
  }

 private:
  eMinMaxType m_type = None;
  std::string m_date;
  double m_double = 0;
  int m_integer = 0;
};

/// The smallest and the largest value of an attribute.
class LUMO_API AttributeMinMax : public lumo::FromXml<AttributeMinMax> {
 public:
  AttributeMinMax() = default;
  explicit AttributeMinMax(XmlNode<char> const* node);

  /// Symbol of the unit of both; empty without one.
  std::string const& GetUnit() const { return m_unit; }
  void SetUnit(std::string const& unit) { m_unit = unit; }
  /// Null when the reply named none.
  SmartPtr<AttributeReference> GetAttributeReference() const { return m_attributeReference; }
  void SetAttributeReference(SmartPtr<AttributeReference> const& attributeReference) {
    m_attributeReference = attributeReference;
  }
  /// Null when the attribute has no values.
  SmartPtr<MinMaxValue> GetMin() const { return m_min; }
  void SetMin(SmartPtr<MinMaxValue> const& min) { m_min = min; }
  /// Null when the attribute has no values.
  SmartPtr<MinMaxValue> GetMax() const { return m_max; }
  void SetMax(SmartPtr<MinMaxValue> const& max) { m_max = max; }

 private:
  std::string m_unit;
  SmartPtr<AttributeReference> m_attributeReference;
  SmartPtr<MinMaxValue> m_min;
  SmartPtr<MinMaxValue> m_max;
};
