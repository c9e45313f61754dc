#pragma once

#include <string>
#include <vector>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"

/// One chosen word of a discrete attribute.
class LUMO_API DiscreteValue : public lumo::FromXml<DiscreteValue> {
 public:
  DiscreteValue() = default;
  explicit DiscreteValue(XmlNode<char> const* node);

  /// One of the words that the attribute allows.
  std::string const& GetValue() const { return m_value; }
  void SetValue(std::string const& value) { m_value = value; }
  /// Place of the word among those of the attribute; 0 by default.
  int GetOrder() const { return m_order; }
  void SetOrder(int order) { m_order = order; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  int m_order = 0;
  std::string m_value;
};

/// One or more words out of those that the attribute allows.
class LUMO_API DiscreteDataType : public lumo::DataValue<DiscreteDataType> {
 public:
  DiscreteDataType() = default;
  explicit DiscreteDataType(XmlNode<char> const* node);
  std::string GetNodeName() const override { return "DiscreteDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::DISCRETE_TYPE_STRING; }

  std::vector<SmartPtr<DiscreteValue>>& AccessDiscreteValues() { return m_discreteValues; }
  std::vector<SmartPtr<DiscreteValue>> const& AccessDiscreteValues() const {
    return m_discreteValues;
  }
  void AddDiscreteValue(SmartPtr<DiscreteValue> const& value) { m_discreteValues.push_back(value); }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<DiscreteValue>> m_discreteValues;
};
