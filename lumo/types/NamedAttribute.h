#pragma once

#include <string>

#include "lumo/types/AttributeReference.h"

/// An attribute with its name.
class LUMO_API NamedAttribute : public lumo::FromXml<NamedAttribute> {
 public:
  NamedAttribute() = default;
  explicit NamedAttribute(XmlNode<char> const* node);

  /// Null when none is known; its element is sent all the same, empty.
  SmartPtr<AttributeReference> GetAttribute() const { return m_attribute; }
  void SetAttribute(SmartPtr<AttributeReference> const& attribute) { m_attribute = attribute; }
  /// Name of the attribute.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }
  /// For a meta-attribute the attribute that it describes, otherwise null. Not sent.
  SmartPtr<NamedAttribute> GetAbout() const { return m_about; }
  void SetAbout(SmartPtr<NamedAttribute> const& about) { m_about = about; }
  /// Whether this is a meta-attribute. Not sent.
  bool GetIsMeta() const { return m_isMeta; }
  void SetIsMeta(bool isMeta) { m_isMeta = isMeta; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  SmartPtr<AttributeReference> m_attribute;
  std::string m_name;
  SmartPtr<NamedAttribute> m_about;
  bool m_isMeta = false;
};
