#include "lumo/types/RecordReference.h"

#include <string_view>
#include <utility>

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

RecordReference::RecordReference(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.StepOver({"dbKey"});
  in.In("identity").Child("recordHistoryIdentity", m_identity);
  auto const readGuid = [this, &in](std::string_view name, std::string Guids::*guid) {
    std::string text;
    if (in.Child(name, text) && !text.empty()) m_guids.Make().*guid = std::move(text);
  };
  readGuid("recordGUID", &Guids::record);
  readGuid("recordHistoryGUID", &Guids::history);
}

void RecordReference::CreateXMLNode(XmlNode<char>* node) const {
  LumoEntityReference::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  if (m_identity != 0) out.Into("zbt:identity").Child("zbt:recordHistoryIdentity", m_identity);
  out.ChildIfSet("zbt:recordGUID", GetRecordGUID());
  out.ChildIfSet("zbt:recordHistoryGUID", GetHistoryGUID());
}
