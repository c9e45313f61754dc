#pragma once

#include <string>
#include <vector>

#include "lumo/platform/core/Counted.h"
#include "lumo/services/dataimport/ImportAttributeValue.h"
#include "lumo/types/ImportRecordModes.h"
#include "lumo/types/RecordReference.h"
#include "lumo/types/SubsetReference.h"

/// A record to create, change or copy. What `GetExistingRecord` is depends on the mode: the record
/// to change, the parent of a new one, or the record to copy.
class LUMO_API ImportRecord : public lumo::Counted<ImportRecord> {
 public:
  /// What happens to the subsets of the record that exists: nothing, the given ones are added, or
  /// they take the place of all others.
  enum eUpdateSubsetsMode : int { None = 0, Append = 1, Replace = 2 };

  ImportRecord() = default;
  /// The record to change, to copy or to make a child of, as `mode` says, with the name that it
  /// gets.
  ImportRecord(SmartPtr<RecordReference> const& existingRecord, std::string const& recordName,
               ImportRecordModes::eImportRecordMode const& mode, bool isFolder)
      : m_recordName(recordName),
        m_isFolder(isFolder),
        m_importRecordMode(mode),
        m_existingRecord(existingRecord) {}

  /// The values to set.
  std::vector<SmartPtr<ImportAttributeValue>>& AccessImportAttributeValues() {
    return m_importAttributeValues;
  }
  std::vector<SmartPtr<ImportAttributeValue>> const& AccessImportAttributeValues() const {
    return m_importAttributeValues;
  }
  void AddImportAttributeValue(SmartPtr<ImportAttributeValue> const& value) {
    m_importAttributeValues.push_back(value);
  }
  /// Whether the record is released; true by default.
  bool GetReleaseRecord() const { return m_releaseRecord; }
  void SetReleaseRecord(bool releaseRecord) { m_releaseRecord = releaseRecord; }
  /// Not sent when empty.
  std::string const& GetRecordName() const { return m_recordName; }
  void SetRecordName(std::string const& recordName) { m_recordName = recordName; }
  /// Whether a new record is a folder.
  bool GetIsFolder() const { return m_isFolder; }
  void SetIsFolder(bool isFolder) { m_isFolder = isFolder; }
  /// What happens to the subsets of the record, one of `eUpdateSubsetsMode`; not sent when
  /// `None`.
  int GetUpdateSubsetsMode() const { return m_updateSubsetsMode; }
  void SetUpdateSubsetsMode(int updateSubsetsMode) { m_updateSubsetsMode = updateSubsetsMode; }
  /// The subsets; not sent when there are none.
  std::vector<SmartPtr<SubsetReference>>& AccessSubsetReferences() { return m_subsetReferences; }
  std::vector<SmartPtr<SubsetReference>> const& AccessSubsetReferences() const {
    return m_subsetReferences;
  }
  void AddSubsetReference(SmartPtr<SubsetReference> const& subset) {
    m_subsetReferences.push_back(subset);
  }
  /// A record of a mode without a word is not sent at all.
  ImportRecordModes::eImportRecordMode GetImportRecordMode() const { return m_importRecordMode; }
  void SetImportRecordMode(ImportRecordModes::eImportRecordMode importRecordMode) {
    m_importRecordMode = importRecordMode;
  }
  /// Its element is sent empty when null.
  SmartPtr<RecordReference> GetExistingRecord() const { return m_existingRecord; }
  void SetExistingRecord(SmartPtr<RecordReference> const& existingRecord) {
    m_existingRecord = existingRecord;
  }
  /// The parent of a copy; its element is sent empty when null.
  SmartPtr<RecordReference> GetCopyParentRecord() const { return m_copyParentRecord; }
  void SetCopyParentRecord(SmartPtr<RecordReference> const& copyParentRecord) {
    m_copyParentRecord = copyParentRecord;
  }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::vector<SmartPtr<ImportAttributeValue>> m_importAttributeValues;
  bool m_releaseRecord = true;
  std::string m_recordName;
  bool m_isFolder = false;
  int m_updateSubsetsMode = None;
  std::vector<SmartPtr<SubsetReference>> m_subsetReferences;
  ImportRecordModes::eImportRecordMode m_importRecordMode = ImportRecordModes::Create;
  SmartPtr<RecordReference> m_existingRecord;
  SmartPtr<RecordReference> m_copyParentRecord;
};
