#include "lumo/services/dataimport/ImportRecord.h"

#include "lumo/xml/NodeWriter.h"

namespace {

std::string UpdateSubsetsModeText(int mode) {
  if (mode == ImportRecord::Append) return "Append";
  return mode == ImportRecord::Replace ? "Replace" : "";
}

}  // namespace

void ImportRecord::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Into("zbt:importAttributeValues")
      .Children("zbt:importAttributeValue", m_importAttributeValues);
  out.ChildIfSet("zbt:releaseRecord", int{m_releaseRecord});  // flags are numbers here
  out.ChildIfSet("zbt:recordName", m_recordName);
  out.Child("zbt:isFolder", int{m_isFolder});
  out.ChildIfSet("zbt:UpdateSubsetsMode", m_updateSubsetsMode, UpdateSubsetsModeText);
  out.List("zbt:subsetReferences", "zbt:subset", m_subsetReferences);
  switch (m_importRecordMode) {
    case ImportRecordModes::Update: out.ChildOrEmpty("zbt:record", m_existingRecord); break;
    case ImportRecordModes::Create: out.ChildOrEmpty("zbt:parentRecord", m_existingRecord); break;
    case ImportRecordModes::Copy:
      out.ChildOrEmpty("zbt:sourceRecord", m_existingRecord);
      out.ChildOrEmpty("zbt:parentRecord", m_copyParentRecord);
      break;
    default: break;
  }
}
