#include "lumo/types/PartialTableReference.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

PartialTableReference::PartialTableReference(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("tableIdentity", m_tableID);
  in.Child("tableGUID", m_tableGUID);
  in.Child("tableName", m_tableName);
}

SmartPtr<PartialTableReference> PartialTableReference::CreateOneFromTableID(int tableID) {
  auto table = CreateOne();
  table->SetTableID(tableID);
  return table;
}

SmartPtr<PartialTableReference> PartialTableReference::CreateOneFromTableGUID(
    std::string const& tableGUID) {
  auto table = CreateOne();
  table->SetTableGUID(tableGUID);
  return table;
}

SmartPtr<PartialTableReference> PartialTableReference::CreateOneFromTableName(
    std::string const& tableName) {
  auto table = CreateOne();
  table->SetTableName(tableName);
  return table;
}

void PartialTableReference::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.ChildIfSet("zbt:tableIdentity", m_tableID);
  out.ChildIfSet("zbt:tableGUID", m_tableGUID);
  out.ChildIfSet("zbt:tableName", m_tableName);
}
