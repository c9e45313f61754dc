#pragma once

#include <string>

#include "lumo/platform/core/OptionalPart.h"
#include "lumo/xml/FromXml.h"
#include "lumo/xml/NodeReader.h"

/// Says to which attribute something in a reply belongs.
class LUMO_API AttributeIdentifier : public lumo::FromXml<AttributeIdentifier> {
 public:
  AttributeIdentifier() = default;
  explicit AttributeIdentifier(XmlNode<char> const* node);

  /// Name of the attribute.
  std::string const& GetAttributeName() const { return m_attributeName; }
  void SetAttributeName(std::string const& name) { m_attributeName = name; }
  /// Identity of the attribute; 0 means not set.
  int GetAttributeID() const { return m_attributeID; }
  void SetAttributeID(int attributeID) { m_attributeID = attributeID; }
  /// Empty when the attribute has no standard name.
  std::string const& GetStandardAttributeName() const { return m_standardAttributeName.Get(); }
  void SetStandardAttributeName(std::string const& name) { m_standardAttributeName = name; }

 protected:
  /// The two steps of reading, for a class that goes on reading the same element. The first one is
  /// false when the element does not name an attribute.
  bool ReadName(lumo::NodeReader& in);
  /// See `ReadName`.
  void ReadRest(lumo::NodeReader& in);

 private:
  int m_attributeID = 0;
  std::string m_attributeName;
  lumo::OptionalPart<std::string> m_standardAttributeName;
};
