#pragma once

#include <string>

#include "lumo/xml/FromXml.h"

/// Who made something and who changed it last. Times are the texts that the server sends.
class LUMO_API RevisionInfo : public lumo::FromXml<RevisionInfo> {
 public:
  RevisionInfo() = default;
  explicit RevisionInfo(XmlNode<char> const* node);

  /// When it was changed last.
  std::string const& GetModified() const { return m_modified; }
  void SetModified(std::string const& modified) { m_modified = modified; }
  /// By whom it was changed last.
  std::string const& GetModifiedUser() const { return m_modifiedUser; }
  void SetModifiedUser(std::string const& modifiedUser) { m_modifiedUser = modifiedUser; }
  /// When it was made.
  std::string const& GetCreated() const { return m_created; }
  void SetCreated(std::string const& created) { m_created = created; }
  /// By whom it was made.
  std::string const& GetCreatedUser() const { return m_createdUser; }
  void SetCreatedUser(std::string const& createdUser) { m_createdUser = createdUser; }
  /// How often it was changed; 0 when the reply does not say.
  int GetUpdateCount() const { return m_updateCount; }
  void SetUpdateCount(int updateCount) { m_updateCount = updateCount; }

 private:
  std::string m_modified;
  std::string m_modifiedUser;
  std::string m_created;
  std::string m_createdUser;
  int m_updateCount = 0;
};
