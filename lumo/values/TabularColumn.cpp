#include "lumo/values/TabularColumn.h"

#include <algorithm>

#include "lumo/xml/NodeReader.h"

std::array<std::string, 4> const TabularColumn::TypeStrings = {
    "Local", "TargetAttribute", "TargetRecord", "TargetTabularColumn"};

TabularColumn::eType TabularColumn::ParseType(std::string const& text) {
  auto const* const found = std::find(TypeStrings.begin(), TypeStrings.end(), text);
  return static_cast<eType>(found - TypeStrings.begin());  // the end is Unknown
}

TabularColumn::TabularColumn(XmlNode<char> const* node) {
  lumo::NodeReader const in(node);
  in.Text(m_name);
  in.Attribute("columnType", m_columnType, ParseType);
}
