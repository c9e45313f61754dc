#include "lumo/values/TabularColumn.h"

#include "lumo/platform/core/Early.h"
#include "lumo/xml/NodeReader.h"
#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<TabularColumn::eType> kWords[] = {
    {TabularColumn::Local, "Local"},
    {TabularColumn::TargetAttribute, "TargetAttribute"},
    {TabularColumn::TargetRecord, "TargetRecord"},
    {TabularColumn::TargetTabularColumn, "TargetTabularColumn"},
};

}  // namespace

LUMO_EARLY std::array<std::string, 4> const TabularColumn::TypeStrings = {
    std::string(kWords[0].text), std::string(kWords[1].text), std::string(kWords[2].text),
    std::string(kWords[3].text)};

TabularColumn::eType TabularColumn::ParseType(std::string const& text) {
  return lumo::ValueOf(kWords, text, Unknown);
}

TabularColumn::TabularColumn(XmlNode<char> const* node) {
  lumo::NodeReader const in(node);
  in.Text(m_name);
  in.Attribute("columnType", m_columnType, ParseType);
}
