#pragma once

#include "lumo/types/RecordReference.h"
#include "lumo/xml/FromXml.h"

/// A version of a record and the state it is in.
class LUMO_API RecordVersionState : public lumo::FromXml<RecordVersionState> {
 public:
  enum eVersionState : int {
    Released = 0,
    Superseded = 1,
    Withdrawn = 2,
    Unreleased = 3,
    Unversioned = 4,
    Unknown = 5
  };
  /// `Unknown` for an unknown word; case counts.
  static eVersionState VersionState_FromString(std::string const& text);

  RecordVersionState() = default;
  explicit RecordVersionState(XmlNode<char> const* node);

  /// Null when the reply named none.
  SmartPtr<RecordReference> GetRecord() const { return m_record; }
  void SetRecord(SmartPtr<RecordReference> const& record) { m_record = record; }
  /// One of `eVersionState`.
  int GetVersionState() const { return m_versionState; }
  void SetVersionState(int versionState) { m_versionState = versionState; }

 private:
  SmartPtr<RecordReference> m_record;
  int m_versionState = Unknown;
};
