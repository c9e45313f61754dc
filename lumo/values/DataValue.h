#pragma once

#include <type_traits>

#include "lumo/values/DataValueFactoryNew.h"
#include "lumo/xml/FromXml.h"
#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

namespace lumo {

/// Base of the value classes that a factory builds: adds `s_factory`, null until library start-up.
template <class T, class Base = IDataValue>
class LUMO_API DataValue : public FromXml<T, Base> {
 public:
  /// Made by library start-up; null before it, and after shut-down.
  static inline TypedDataValueFactory<T>* s_factory = nullptr;
  using FromXml<T, Base>::FromXml;
  DataValue() = default;
};

/// A value that is the text of its element: a `Field` of type std::string, int or bool, empty, 0 or
/// false by default. Throws what the conversion of its text throws, see `IntegerFromText`.
template <class T, class Field>
class LUMO_API SimpleValue : public DataValue<T> {
 public:
  /// How the value is handed over: texts by reference, numbers by value.
  using Accessed = std::conditional_t<std::is_class_v<Field>, Field const&, Field>;

  SimpleValue() = default;
  explicit SimpleValue(XmlNode<char> const* node) {
    this->LoadCommonAttributes(node);
    NodeReader(node).Text(m_value);
  }

  /// What the attribute holds.
  Accessed GetValue() const { return m_value; }
  void SetValue(Accessed value) { m_value = value; }

  void CreateXMLNode(XmlNode<char>* node) const override { NodeWriter(node).Text(m_value); }

 private:
  Field m_value{};
};

}  // namespace lumo
