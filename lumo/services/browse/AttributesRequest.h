#pragma once

#include <vector>

#include "lumo/session/IRequest.h"
#include "lumo/types/AttributeReference.h"
#include "lumo/xml/NodeWriter.h"

namespace lumo {

/// Base of the requests that are about some attributes.
template <class T>
class AttributesRequest : public Request<T> {
 public:
  std::vector<SmartPtr<AttributeReference>>& AccessAttributeReferences() {
    return m_attributeReferences;
  }
  std::vector<SmartPtr<AttributeReference>> const& AccessAttributeReferences() const {
    return m_attributeReferences;
  }
  void AddAttributeReference(SmartPtr<AttributeReference> const& attribute) {
    m_attributeReferences.push_back(attribute);
  }

  /// The list is sent even when it is empty.
  void CreateXMLNode(XmlNode<char>* node) const override {
    NodeWriter(node)
        .Into("zbt:attributeReferences")
        .Children("zbt:attribute", m_attributeReferences);
  }

 private:
  std::vector<SmartPtr<AttributeReference>> m_attributeReferences;
};

}  // namespace lumo
