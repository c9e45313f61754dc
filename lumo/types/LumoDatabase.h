#pragma once

#include <string>

#include "lumo/types/LumoEntityReference.h"

/// A database of the server, as listed by `GetDatabases`.
class LUMO_API LumoDatabase : public lumo::FromXml<LumoDatabase, LumoEntityReference> {
 public:
  LumoDatabase() = default;
  explicit LumoDatabase(XmlNode<char> const* node);

  /// Name of the database as users see it.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }

 private:
  std::string m_name;
};
