#pragma once

#include "lumo/platform/core/Counted.h"
#include "lumo/xml/Xml.h"

/// Base of every request.
class LUMO_API IRequest : public SmartPtrTarget_ts {
 public:
  /// Writes the request's content into the element that stands for it in the body.
  virtual void CreateXMLNode(XmlNode<char>* node) const = 0;
};

namespace lumo {

/// Base of a request class: `class GetTables : public lumo::Request<GetTables>`.
template <class T>
using Request = Counted<T, IRequest>;

}  // namespace lumo
