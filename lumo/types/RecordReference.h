#pragma once

#include <string>

#include "lumo/types/LumoEntityReference.h"

/// A record of a database. Every identifier that is set is sent; the server decides which one it
/// follows.
class LUMO_API RecordReference : public lumo::FromXml<RecordReference, LumoEntityReference> {
 public:
  RecordReference() = default;
  explicit RecordReference(XmlNode<char> const* node);
  RecordReference(RecordReference const& other) : FromXml() { *this = other; }
  RecordReference& operator=(RecordReference const& other) = default;

  /// GUID of one version of the record.
  std::string const& GetRecordGUID() const { return m_recordGUID; }
  void SetRecordGUID(std::string const& recordGUID) { m_recordGUID = recordGUID; }
  /// GUID of the record's history, the same for all its versions.
  std::string const& GetHistoryGUID() const { return m_historyGUID; }
  void SetHistoryGUID(std::string const& historyGUID) { m_historyGUID = historyGUID; }
  /// Identity of the record's history; 0 means not set.
  int GetIdentity() const { return m_identity; }
  void SetIdentity(int identity) { m_identity = identity; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  int m_identity = 0;
  std::string m_recordGUID;
  std::string m_historyGUID;
};
