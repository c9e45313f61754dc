#pragma once

#include <string>

#include "lumo/xml/FromXml.h"

/// Where help on an attribute or a parameter is found.
class LUMO_API HelpInfo : public lumo::FromXml<HelpInfo> {
 public:
  HelpInfo() = default;
  explicit HelpInfo(XmlNode<char> const* node);

  /// Address of a page of help.
  std::string const& GetHelpURI() const { return m_helpURI; }
  void SetHelpURI(std::string const& helpURI) { m_helpURI = helpURI; }
  /// Whether the help is kept in the database.
  bool GetIsDatabaseHelp() const { return m_isDatabaseHelp; }
  void SetIsDatabaseHelp(bool isDatabaseHelp) { m_isDatabaseHelp = isDatabaseHelp; }

 private:
  std::string m_helpURI;
  bool m_isDatabaseHelp = false;
};
