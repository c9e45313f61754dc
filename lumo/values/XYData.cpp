#include "lumo/values/XYData.h"

#include "lumo/values/IDataValue.h"
#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"
#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<XYDatum::eDataType> kTypeWords[] = {
    {XYDatum::XYPoint, "XYPoint"},
    {XYDatum::XYRange, "XYRange"},
};

}  // namespace

XYDatum::XYDatum(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("X", m_x);
  in.Child("Estimated", m_isEstimated, lumo::StrictBooleanFromText);
}

void XYDatum::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:X", m_x);
  out.Child("zbt:Estimated", m_isEstimated);
}

XYPoint::XYPoint(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader(node).Child("Y", m_y);
}

void XYPoint::CreateXMLNode(XmlNode<char>* node) const {
  XYDatum::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  out.Attribute("xsi:type", "zbt:XYPoint");
  out.Child("zbt:Y", m_y);
}

XYRange::XYRange(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.Child("UpperY", m_upperY);
  in.Child("LowerY", m_lowerY);
}

void XYRange::CreateXMLNode(XmlNode<char>* node) const {
  XYDatum::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  out.Attribute("xsi:type", "zbt:XYRange");
  out.Child("zbt:LowerY", m_lowerY);
  out.Child("zbt:UpperY", m_upperY);
}

std::string XYData::GetTypeAsString(XYDatum::eDataType type) {
  return lumo::WordOf(kTypeWords, type, "Unknown");
}

XYData::XYData(XmlNode<char> const* node) {
  lumo::NodeReader(node).ForEach("XYPoint", [this](XmlNode<char> const& point) {
    lumo::NodeReader const in(&point);
    if (in.TypeContains("XYRange")) {
      AddPoint(XYRange::CreateOne(&point));
    } else if (in.TypeContains("XYPoint")) {
      AddPoint(XYPoint::CreateOne(&point));
    }
  });
}

XYDatum::eDataType XYData::GetType() const {
  bool const isTyped = !m_points.empty() && m_points.front();
  return isTyped ? m_points.front()->GetType() : XYDatum::Unknown;
}

void XYData::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter(node).Children("zbt:XYPoint", m_points);
}
