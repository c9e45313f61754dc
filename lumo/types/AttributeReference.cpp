#include "lumo/types/AttributeReference.h"

#include <string_view>

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"
#include "lumo/xml/Words.h"

namespace {

using PseudoAttrs = AttributeReference::PseudoAttrs;
using PseudoName = lumo::Word<PseudoAttrs::eLumoPseudoAttributeReference>;
constexpr PseudoName kPseudoNames[] = {
    // the last has no bracketed form
    {PseudoAttrs::Name, "name"},
    {PseudoAttrs::ShortName, "shortName"},
    {PseudoAttrs::Subsets, "subsets"},
    {PseudoAttrs::ReleasedDate, "releasedDate"},
    {PseudoAttrs::ModifiedDate, "modifiedDate"},
    {PseudoAttrs::RecordType, "recordType"},
    {PseudoAttrs::RecordHistoryIdentity, "recordHistoryIdentity"},
    {PseudoAttrs::RecordColor, "recordColor"},
    {PseudoAttrs::LinkedRecords, "linkedRecords"},
    {PseudoAttrs::VersionState, "versionState"},
    {PseudoAttrs::RecordGUID, "recordGUID"},
    {PseudoAttrs::RecordHistoryGUID, "recordHistoryGUID"},
    {PseudoAttrs::RecordVersionNumber, "recordVersionNumber"},
    {PseudoAttrs::TableName, "tableName"},
    {PseudoAttrs::ChildRecords, "childRecords"},
    {PseudoAttrs::TableFilters, "tableFilters"},
    {PseudoAttrs::Writable, "writable"},
    {PseudoAttrs::ParentName, "parentName"},
    {PseudoAttrs::ParentShortName, "parentShortName"},
    {PseudoAttrs::ParentRecordHistoryIdentity, "parentRecordHistoryIdentity"},
    {PseudoAttrs::ParentRecordHistoryGUID, "parentRecordHistoryGUID"},
};

}  // namespace

AttributeReference::AttributeReference(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.StepOver({"dbKey"});
  in.Child("attributeIdentity", m_attributeID);
  lumo::NodeReader name = in.In("name");
  name.Attribute("isStandard", m_isStandardName);
  name.Child("table", m_partialTableReference);
  name.Child("attributeName", m_name);
}

bool AttributeReference::IsPseudoAttributeName(std::string const& name, int* index) {
  if (name.size() < 2 || name.front() != '[' || name.back() != ']') return false;
  std::string_view const inner = std::string_view(name).substr(1, name.size() - 2);
  auto const* const word = lumo::FindWord(kPseudoNames, &PseudoName::text, inner);
  bool const hasBrackets = word != nullptr && word->value != PseudoAttrs::ParentRecordHistoryGUID;
  if (hasBrackets && index != nullptr) *index = word->value;
  return hasBrackets;
}

void AttributeReference::MakePseudoAttribute(PseudoAttrs::eLumoPseudoAttributeReference e) {
  std::string const name = lumo::WordOf(kPseudoNames, e, "");
  if (name.empty()) return;
  m_name = name;
  m_isStandardName = true;
  m_attributeID = 0;
  m_partialTableReference.Reset();
  m_isPseudo = true;
}

void AttributeReference::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  if (m_isPseudo) {  // a pseudo-attribute belongs to no database
    lumo::NodeWriter name = out.Into("zbt:name");
    name.Attribute("zbt:isStandard", m_isStandardName);
    name.Child("zbt:pseudo", m_name);
    return;
  }
  LumoEntityReference::CreateXMLNode(node);
  if (m_attributeID != 0) {  // an identity makes the name superfluous
    out.Child("zbt:attributeIdentity", m_attributeID);
    return;
  }
  if (m_name.empty()) return;
  lumo::NodeWriter name = out.Into("zbt:name");
  name.Attribute("zbt:isStandard", m_isStandardName);
  if (!m_isStandardName) name.Child("zbt:table", m_partialTableReference);
  name.Child("zbt:attributeName", m_name);
}
