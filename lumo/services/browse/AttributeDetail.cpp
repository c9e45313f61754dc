#include "lumo/services/browse/AttributeDetail.h"

#include "lumo/platform/core/Early.h"
#include "lumo/xml/NodeReader.h"

LUMO_EARLY std::unordered_set<std::string> AttributeDetail::s_supportedColumns;

void AttributeDetail::StaticInit() { s_supportedColumns = {"local", "target", "unavailable"}; }

AttributeDetail::AttributeDetail(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.Child("identity", m_identity);
  in.Child("type", m_type);
  in.Child("revisionInfo", m_revisionInfo);
  in.Child("helpInfo", m_helpInfo);
  in.Child("databaseUnit", m_databaseUnit);
  in.Child("defaultThreshold", m_defaultThreshold);
  in.In("discreteValues").Children("discreteValue", m_discreteValues);
  in.Child("order", m_order);
  in.Attribute("isSearchable", m_isSearchable);
  in.Attribute("isMultiValued", m_isMultiValued);
  in.Attribute("isChartable", m_isChartable);
  in.Child("axisName", m_axisName);
  in.In("columns").ForEachChild([this](XmlNode<char> const& column) {
    if (s_supportedColumns.count(XMLUtilites::GetName(&column)) == 0) return;
    AddColumn(TabularColumnDetail::CreateOne(&column));
  });
}
