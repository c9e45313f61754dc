#pragma once

#include <string>
#include <utility>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"

/// An address with its description.
class LUMO_API HyperlinkDataType : public lumo::DataValue<HyperlinkDataType> {
 public:
  HyperlinkDataType() = default;
  explicit HyperlinkDataType(XmlNode<char> const* node);
  std::string GetNodeName() const override { return "HyperlinkDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::HYPERLINK_TYPE_STRING; }

  /// The address.
  std::string const& GetValue() const { return m_value; }
  void SetValue(std::string const& value) { m_value = value; }
  /// The text to show for it.
  std::string const& GetDescription() const { return m_description; }
  void SetDescription(std::string description) { m_description = std::move(description); }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_value;
  std::string m_description;
};
