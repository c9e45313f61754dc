#pragma once

#include <string>

#include "lumo/types/RecordReference.h"

/// A record with its names, as replies list it.
class LUMO_API NamedRecord : public lumo::FromXml<NamedRecord> {
 public:
  NamedRecord() = default;
  explicit NamedRecord(XmlNode<char> const* node);

  /// The name that the record tree shows.
  std::string const& GetShortName() const { return m_shortName; }
  void SetShortName(std::string const& shortName) { m_shortName = shortName; }
  /// The name in full.
  std::string const& GetLongName() const { return m_longName; }
  void SetLongName(std::string const& longName) { m_longName = longName; }
  /// Null when the reply carried none.
  SmartPtr<RecordReference> GetRecordReference() const { return m_recordReference; }
  void SetRecordReference(SmartPtr<RecordReference> const& record) { m_recordReference = record; }

 private:
  std::string m_shortName;
  std::string m_longName;
  SmartPtr<RecordReference> m_recordReference;
};
