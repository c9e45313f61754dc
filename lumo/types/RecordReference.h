#pragma once

#include <string>

#include "lumo/platform/core/OptionalPart.h"
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
  std::string const& GetRecordGUID() const { return m_guids.Get().record; }
  void SetRecordGUID(std::string const& recordGUID) { Set(&Guids::record, recordGUID); }
  /// GUID of the record's history, the same for all its versions.
  std::string const& GetHistoryGUID() const { return m_guids.Get().history; }
  void SetHistoryGUID(std::string const& historyGUID) { Set(&Guids::history, historyGUID); }
  /// Identity of the record's history; 0 means not set.
  int GetIdentity() const { return m_identity; }
  void SetIdentity(int identity) { m_identity = identity; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  struct Guids {
    std::string record;
    std::string history;
  };
  void Set(std::string Guids::*guid, std::string const& text) {
    if (!text.empty() || !(m_guids.Get().*guid).empty()) m_guids.Make().*guid = text;
  }

  int m_identity = 0;
  lumo::OptionalPart<Guids> m_guids;  // many replies come without them
};
