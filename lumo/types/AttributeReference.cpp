#include "lumo/types/AttributeReference.h"

#include <cstddef>
#include <string_view>

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

namespace {

constexpr std::string_view kPseudoNames[] = {
    "name",
    "shortName",
    "subsets",
    "releasedDate",
    "modifiedDate",
    "recordType",
    "recordHistoryIdentity",
    "recordColor",
    "linkedRecords",
    "versionState",
    "recordGUID",
    "recordHistoryGUID",
    "recordVersionNumber",
    "tableName",
    "childRecords",
    "tableFilters",
    "writable",
    "parentName",
    "parentShortName",
    "parentRecordHistoryIdentity",
    "parentRecordHistoryGUID",
};
/// The last name has no bracketed form.
constexpr std::size_t kBracketedNames = std::size(kPseudoNames) - 1;

}  // namespace

AttributeReference::AttributeReference(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.Child("attributeIdentity", m_attributeID);
  lumo::NodeReader name = in.In("name");
  name.Attribute("isStandard", m_isStandardName);
  name.Child("table", m_partialTableReference);
  name.Child("attributeName", m_name);
}

bool AttributeReference::IsPseudoAttributeName(std::string const& name, int* index) {
  if (name.size() < 2 || name.front() != '[' || name.back() != ']') return false;
  std::string_view const inner = std::string_view(name).substr(1, name.size() - 2);
  for (std::size_t i = 0; i < kBracketedNames; ++i) {
    if (inner != kPseudoNames[i]) continue;
    if (index != nullptr) *index = static_cast<int>(i);
    return true;
  }
  return false;
}

void AttributeReference::MakePseudoAttribute(PseudoAttrs::eLumoPseudoAttributeReference e) {
  auto const index = static_cast<std::size_t>(static_cast<unsigned>(e));
  if (index >= std::size(kPseudoNames)) return;
  m_name = kPseudoNames[index];
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
