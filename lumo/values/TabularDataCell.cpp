#include "lumo/values/TabularDataCell.h"

#include <string>

#include "lumo/platform/core/Early.h"
#include "lumo/values/BuildValue.h"
#include "lumo/xml/NodeWriter.h"

LUMO_EARLY lumo::NameRegistry TabularDataCell::s_factory;

void TabularDataCell::RegisterTypes() { s_factory = lumo::ShortNames(); }

SmartPtr<TabularDataCell> TabularDataCell::CreateOne(SmartPtr<IDataValue> const& data,
                                                     TabularColumn const* column) {
  return {new TabularDataCell(data, column)};
}

SmartPtr<TabularDataCell> TabularDataCell::CreateOne(XmlNode<char> const* node,
                                                     TabularColumn const* column) {
  if (node == nullptr) return nullptr;
  return CreateOne(lumo::BuildFirst(s_factory, *node), column);
}

void TabularDataCell::CreateXMLNode(XmlNode<char>* node) const {
  if (!m_data) return;
  lumo::NodeWriter out(node);
  if (GetColumn() != nullptr) out.Attribute("zbt:columnName", GetColumn()->GetName());
  std::string const name = m_data->GetNodeName();
  out.Child("zbt:" + name.substr(0, name.find("DataValue")), m_data);
}
