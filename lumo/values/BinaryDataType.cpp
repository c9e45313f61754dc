#include "lumo/values/BinaryDataType.h"

#include "lumo/platform/crypto/Base64.h"
#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

BinaryDataType::BinaryDataType(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("contentType", m_contentType);
  in.Child("data", m_data);
  in.Child("URL", m_url);
}

std::vector<unsigned char> BinaryDataType::GetData() const {
  std::string const bytes = Insecure::Crypto_Base64::Decode(m_data);
  return {bytes.begin(), bytes.end()};
}

void BinaryDataType::SetData(std::vector<unsigned char> const& bytes) {
  m_data = Insecure::Crypto_Base64::Encode(std::string(bytes.begin(), bytes.end()));
}

void BinaryDataType::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:data", m_data);
  out.Child("zbt:contentType", m_contentType);
}
