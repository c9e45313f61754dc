#pragma once

#include <string>

#include "lumo/types/LumoEntityReference.h"

/// A parameter of functional attributes, by identity or by name; one with an identity is sent
/// without its name.
class LUMO_API ParameterReference : public lumo::FromXml<ParameterReference, LumoEntityReference> {
 public:
  ParameterReference() = default;
  explicit ParameterReference(XmlNode<char> const* node);

  /// Identity of the parameter; 0 means not set.
  int GetID() const { return m_id; }
  void SetID(int id) { m_id = id; }
  /// Name of the parameter.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  int m_id = 0;
  std::string m_name;
};
