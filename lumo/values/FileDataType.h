#pragma once

#include <string>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/BinaryDataType.h"
#include "lumo/values/DataValue.h"

/// A file with its name.
class LUMO_API FileDataType : public lumo::DataValue<FileDataType, BinaryDataType> {
 public:
  FileDataType() = default;
  explicit FileDataType(XmlNode<char> const* node);
  std::string GetNodeName() const override { return "FileDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::FILE_TYPE_STRING; }

  /// Name of the file.
  std::string const& GetFileName() const { return m_fileName; }
  void SetFileName(std::string const& fileName) { m_fileName = fileName; }
  /// In words for people.
  std::string const& GetDescription() const { return m_description; }
  void SetDescription(std::string const& description) { m_description = description; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_fileName;
  std::string m_description;
};
