#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "lumo/platform/core/Counted.h"
#include "lumo/xml/NodeWriter.h"
#include "lumo/xml/Xml.h"

/// A condition on the value of an attribute, for `RecordSearchCriterion`.
class LUMO_API SearchValue : public SmartPtrTarget_ts {
 public:
  /// Fills the condition's element.
  virtual void CreateXMLNode(XmlNode<char>* node) const = 0;
  /// Name of the condition's element, without a prefix.
  virtual std::string GetNodeName() const = 0;
};

/// Base of the conditions that compare with a number.
class LUMO_API UnittedRealCriterionValue : public SearchValue {
 public:
  /// What is compared with.
  double GetValue() const { return m_value; }
  void SetValue(double value) { m_value = value; }
  /// Symbol of the unit of the number; not sent when empty, which leaves the unit to the server.
  std::string const& GetUnit() const { return m_unit; }
  void SetUnit(std::string const& unit) { m_unit = unit; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  double m_value = 0;
  std::string m_unit;
};

/// The value is greater.
class LUMO_API GreaterThanSearchValue
    : public lumo::Counted<GreaterThanSearchValue, UnittedRealCriterionValue> {
 public:
  std::string GetNodeName() const override { return "greaterThan"; }
};

/// The value is less.
class LUMO_API LessThanSearchValue
    : public lumo::Counted<LessThanSearchValue, UnittedRealCriterionValue> {
 public:
  std::string GetNodeName() const override { return "lessThan"; }
};

/// Low end of a `BetweenSearchValue`.
class LUMO_API LowEndSearchValue
    : public lumo::Counted<LowEndSearchValue, UnittedRealCriterionValue> {
 public:
  std::string GetNodeName() const override { return "lowEnd"; }
};

/// High end of a `BetweenSearchValue`.
class LUMO_API HighEndSearchValue
    : public lumo::Counted<HighEndSearchValue, UnittedRealCriterionValue> {
 public:
  std::string GetNodeName() const override { return "highEnd"; }
};

/// The value lies between two ends, each with a unit of its own.
class LUMO_API BetweenSearchValue : public lumo::Counted<BetweenSearchValue, SearchValue> {
 public:
  std::string GetNodeName() const override { return "between"; }

  /// Not sent when null, as the other end.
  SmartPtr<LowEndSearchValue> GetLowEnd() const { return m_lowEnd; }
  void SetLowEnd(SmartPtr<LowEndSearchValue> const& lowEnd) { m_lowEnd = lowEnd; }
  /// The upper end; not sent when null.
  SmartPtr<HighEndSearchValue> GetHighEnd() const { return m_highEnd; }
  void SetHighEnd(SmartPtr<HighEndSearchValue> const& highEnd) { m_highEnd = highEnd; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  SmartPtr<LowEndSearchValue> m_lowEnd;
  SmartPtr<HighEndSearchValue> m_highEnd;
};

/// The date lies between two others, which are sent as they stand.
class LUMO_API BetweenDateTimesSearchValue
    : public lumo::Counted<BetweenDateTimesSearchValue, SearchValue> {
 public:
  std::string GetNodeName() const override { return "betweenDateTimes"; }

  /// The ends, as dates such as "2026-03-17":
  std::string const& GetLowEnd() const { return m_lowEnd; }
  void SetLowEnd(std::string const& lowEnd) { m_lowEnd = lowEnd; }
  std::string const& GetHighEnd() const { return m_highEnd; }
  void SetHighEnd(std::string const& highEnd) { m_highEnd = highEnd; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_lowEnd;
  std::string m_highEnd;
};

/// Base of the conditions on the words of a discrete attribute.
class LUMO_API MultiValuedDiscreteCriterion : public SearchValue {
 public:
  std::vector<std::string>& AccessValues() { return m_values; }
  std::vector<std::string> const& AccessValues() const { return m_values; }
  /// Adds a word.
  void AddValue(std::string const& value) { m_values.push_back(value); }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<std::string> m_values;
};

/// The attribute has all of the words.
class LUMO_API ContainsAllSearchValue
    : public lumo::Counted<ContainsAllSearchValue, MultiValuedDiscreteCriterion> {
 public:
  std::string GetNodeName() const override { return "containsAll"; }
};

/// The attribute has at least one of the words.
class LUMO_API ContainsAnySearchValue
    : public lumo::Counted<ContainsAnySearchValue, MultiValuedDiscreteCriterion> {
 public:
  std::string GetNodeName() const override { return "containsAny"; }
};

namespace lumo {

/// Base of the conditions that are a value alone: a `Field` of type std::string or int.
template <class Field>
class LUMO_API SingleValueCriterion : public SearchValue {
 public:
  /// How the value is handed over: texts by reference, numbers by value.
  using Accessed = std::conditional_t<std::is_class_v<Field>, Field const&, Field>;

  /// What is compared with.
  Accessed GetValue() const { return m_value; }
  void SetValue(Accessed value) { m_value = value; }

  void CreateXMLNode(XmlNode<char>* node) const override { NodeWriter(node).Text(m_value); }

 private:
  Field m_value{};
};

/// Base of the conditions that need no value: only the names of their elements tell them apart.
class LUMO_API ExistenceCriterion : public SearchValue {
 public:
  void CreateXMLNode(XmlNode<char>* node) const override;
};

}  // namespace lumo

/// The text contains another.
class LUMO_API ContainsSearchValue
    : public lumo::Counted<ContainsSearchValue, lumo::SingleValueCriterion<std::string>> {
 public:
  std::string GetNodeName() const override { return "contains"; }
};

/// The text does not contain another.
class LUMO_API DoesNotContainSearchValue
    : public lumo::Counted<DoesNotContainSearchValue, lumo::SingleValueCriterion<std::string>> {
 public:
  std::string GetNodeName() const override { return "doesNotContain"; }
};

/// The attribute has a value.
class LUMO_API ExistsSearchValue
    : public lumo::Counted<ExistsSearchValue, lumo::ExistenceCriterion> {
 public:
  std::string GetNodeName() const override { return "exists"; }
};

/// The attribute has no value.
class LUMO_API DoesNotExistSearchValue
    : public lumo::Counted<DoesNotExistSearchValue, lumo::ExistenceCriterion> {
 public:
  std::string GetNodeName() const override { return "doesNotExist"; }
};

/// The integer is this one.
class LUMO_API ExactlySearchValue
    : public lumo::Counted<ExactlySearchValue, lumo::SingleValueCriterion<int>> {
 public:
  std::string GetNodeName() const override { return "exactly"; }
};

/// A cell of a tabular column contains a text.
class LUMO_API TabularColumnContainsSearchValue
    : public lumo::Counted<TabularColumnContainsSearchValue,
                           lumo::SingleValueCriterion<std::string>> {
 public:
  std::string GetNodeName() const override { return "tabularColumnContains"; }

  /// Name of the column; sent even when empty.
  std::string const& GetColName() const { return m_colName; }
  void SetColName(std::string const& colName) { m_colName = colName; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_colName;
};
