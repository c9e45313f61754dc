#pragma once

#include <string>
#include <vector>

#include "lumo/values/IDataValue.h"

/// What files and pictures share: bytes with their content type. A reply carries either the bytes
/// or a URL to fetch them from, as the request asked.
class LUMO_API BinaryDataType : public IDataValue {
 public:
  BinaryDataType() = default;
  explicit BinaryDataType(XmlNode<char> const* node);

  /// Where the bytes can be fetched; empty when they came inline. Not sent.
  std::string const& GetURL() const { return m_url; }
  void SetURL(std::string const& url) { m_url = url; }
  /// The bytes. Throws std::runtime_error when the text that came is no Base64; the text stays.
  std::vector<unsigned char> GetData() const;
  void SetData(std::vector<unsigned char> const& bytes);
  /// The bytes as Base64 text, as they travel.
  std::string const& GetEncodedData() const { return m_data; }
  void SetEncodedData(std::string const& data) { m_data = data; }
  /// MIME type of the bytes.
  std::string const& GetContentType() const { return m_contentType; }
  void SetContentType(std::string const& contentType) { m_contentType = contentType; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_url;
  std::string m_data;
  std::string m_contentType;
};
