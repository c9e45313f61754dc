#pragma once

#include <type_traits>

#include "lumo/platform/core/Counted.h"
#include "lumo/xml/Xml.h"

namespace lumo {

/// Adds `CreateOne(node)` and the constructor from a node to a class that is read from replies. A
/// derived class chains: `class Record : public FromXml<Record, Entity>` hands its node on to
/// `Entity` with `Record(node) : FromXml(node)`. A base that reads nothing names itself
/// `HoldsNothingRead`; every other must take the node, which the compiler sees to.
template <class T, class Base = SmartPtrTarget_ts>
class FromXml : public Counted<T, Base> {
 public:
  FromXml() = default;
  explicit FromXml(XmlNode<char> const* node)
      : FromXml(node, std::is_same<Base, typename Base::HoldsNothingRead>()) {}
  using Counted<T, Base>::CreateOne;
  /// A new object filled from `node`; null for a null node.
  static SmartPtr<T> CreateOne(XmlNode<char> const* node) {
    return node == nullptr ? SmartPtr<T>() : SmartPtr<T>(new T(node));
  }

 private:
  FromXml(XmlNode<char> const* node, std::false_type /*base reads*/) : Counted<T, Base>(node) {}
  FromXml(XmlNode<char> const* /*node*/, std::true_type /*base reads nothing*/) {}
};

}  // namespace lumo
