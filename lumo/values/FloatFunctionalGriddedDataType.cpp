#include "lumo/values/FloatFunctionalGriddedDataType.h"

FloatFunctionalGriddedDataType::FloatFunctionalGriddedDataType(XmlNode<char> const* node)
    : DataValue(node) {
  lumo::NodeReader in(node);
  in.Attribute("decoration", m_decoration, GraphDecoration::FromString);
  in.Child("Values", m_values);
  in.Child("DefaultXAxisParameter", m_defaultXAxisParameter);
}

void FloatFunctionalGriddedDataType::CreateXMLNode(XmlNode<char>* node) const {
  FloatFunctionalDataType::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  out.Attribute("zbt:isNotApplicable", false);
  out.Child("zbt:Values", m_values);
  out.Child("zbt:DefaultXAxisParameter", m_defaultXAxisParameter);
  out.Attribute("zbt:decoration", GraphDecoration::ToString(m_decoration));
}
