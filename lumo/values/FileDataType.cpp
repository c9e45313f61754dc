#include "lumo/values/FileDataType.h"

FileDataType::FileDataType(XmlNode<char> const* node) : DataValue(node) {
  lumo::NodeReader in(node);
  in.Child("fileName", m_fileName);
  in.Child("description", m_description);
}

void FileDataType::CreateXMLNode(XmlNode<char>* node) const {
  BinaryDataType::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  out.Child("zbt:fileName", m_fileName);
  out.Child("zbt:description", m_description);
}
