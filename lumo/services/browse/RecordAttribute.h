#pragma once

#include "lumo/services/browse/WithParameterDetails.h"
#include "lumo/types/NamedAttribute.h"
#include "lumo/types/RecordReference.h"
#include "lumo/types/RevisionInfo.h"
#include "lumo/xml/FromXml.h"

/// An attribute of a record, whether the record has data for it, and the parameters of the
/// attribute when they were asked for.
class LUMO_API RecordAttribute : public lumo::WithParameterDetails<lumo::FromXml<RecordAttribute>> {
 public:
  RecordAttribute() = default;
  explicit RecordAttribute(XmlNode<char> const* node);
  /// Copies every field.
  RecordAttribute(RecordAttribute const& other) : WithParameterDetails() { *this = other; }
  RecordAttribute& operator=(RecordAttribute const& other) = default;

  /// Null when the reply named none.
  SmartPtr<RecordReference> GetRecordReference() const { return m_recordReference; }
  void SetRecordReference(SmartPtr<RecordReference> const& recordReference) {
    m_recordReference = recordReference;
  }
  /// Null when the reply named none.
  SmartPtr<NamedAttribute> GetAttribute() const { return m_attribute; }
  void SetAttribute(SmartPtr<NamedAttribute> const& attribute) { m_attribute = attribute; }
  /// Whether the record has a value for it.
  bool GetHasData() const { return m_hasData; }
  void SetHasData(bool hasData) { m_hasData = hasData; }
  /// Null when the reply gave none.
  SmartPtr<RevisionInfo> GetDataRevisionInfo() const { return m_dataRevisionInfo; }
  void SetDataRevisionInfo(SmartPtr<RevisionInfo> const& dataRevisionInfo) {
    m_dataRevisionInfo = dataRevisionInfo;
  }
  /// Version of the record in which the data came; -1 when the reply does not say.
  int GetDataCreatedRecordVersion() const { return m_dataCreatedRecordVersion; }
  void SetDataCreatedRecordVersion(int dataCreatedRecordVersion) {
    m_dataCreatedRecordVersion = dataCreatedRecordVersion;
  }
  /// Version of the record in which the data went; -1 when the reply does not say.
  int GetDataRetiredRecordVersion() const { return m_dataRetiredRecordVersion; }
  void SetDataRetiredRecordVersion(int dataRetiredRecordVersion) {
    m_dataRetiredRecordVersion = dataRetiredRecordVersion;
  }
  /// -1 when the reply does not say.
  int GetDataVersionNumber() const { return m_dataVersionNumber; }
  void SetDataVersionNumber(int dataVersionNumber) { m_dataVersionNumber = dataVersionNumber; }

 private:
  SmartPtr<RecordReference> m_recordReference;
  SmartPtr<NamedAttribute> m_attribute;
  bool m_hasData = false;
  SmartPtr<RevisionInfo> m_dataRevisionInfo;
  int m_dataCreatedRecordVersion = -1;
  int m_dataRetiredRecordVersion = -1;
  int m_dataVersionNumber = -1;
};
