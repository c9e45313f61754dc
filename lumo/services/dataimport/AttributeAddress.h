#pragma once

#include <string>
#include <vector>

#include "lumo/types/AttributeIdentifier.h"
#include "lumo/types/RecordReference.h"
#include "lumo/xml/FromXml.h"

/// An attribute and the address to which its data is sent.
class LUMO_API AttributeAddress : public lumo::FromXml<AttributeAddress, AttributeIdentifier> {
 public:
  AttributeAddress() = default;
  explicit AttributeAddress(XmlNode<char> const* node);

  /// Where the data goes; empty when the reply gave none. How it is sent there the reply does not
  /// say.
  std::string const& GetUrl() const { return m_url; }
  void SetUrl(std::string const& url) { m_url = url; }

 private:
  std::string m_url;
};

/// A record and the upload addresses of its attributes.
class LUMO_API RecordWithAttributeAddresses : public lumo::FromXml<RecordWithAttributeAddresses> {
 public:
  RecordWithAttributeAddresses() = default;
  explicit RecordWithAttributeAddresses(XmlNode<char> const* node);

  /// Null when the reply named none.
  SmartPtr<RecordReference> GetRecordReference() const { return m_recordReference; }
  void SetRecordReference(SmartPtr<RecordReference> const& recordReference) {
    m_recordReference = recordReference;
  }
  std::vector<SmartPtr<AttributeAddress>>& AccessAttributeAddresses() {
    return m_attributeAddresses;
  }
  std::vector<SmartPtr<AttributeAddress>> const& AccessAttributeAddresses() const {
    return m_attributeAddresses;
  }
  void AddAttributeAddress(SmartPtr<AttributeAddress> const& address) {
    m_attributeAddresses.push_back(address);
  }

 private:
  SmartPtr<RecordReference> m_recordReference;
  std::vector<SmartPtr<AttributeAddress>> m_attributeAddresses;
};
