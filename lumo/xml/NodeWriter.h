#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "lumo/platform/core/LazyPart.h"
#include "lumo/platform/core/OptionalPart.h"
#include "lumo/platform/core/SmartPtr.h"
#include "lumo/xml/ConvertTo.h"
#include "lumo/xml/Xml.h"

namespace lumo {

/// Writes fields as children of one element, a line per field, in the order of the wire:
///
///     lumo::NodeWriter out(node);
///     out.Child("zbt:dbKey", m_dbKey);
///     out.List("zbt:subsetReferences", "zbt:subset", m_subsetReferences);
///
/// Names carry their prefix. Into an element that is null or not attached to a document nothing is
/// written. Enumerations pass the function that makes their text as the last argument.
class LUMO_API NodeWriter {
 public:
  /// Writes into this element.
  explicit NodeWriter(XmlNode<char>* node)
      : m_node(node), m_document(node == nullptr ? nullptr : node->document()) {}

  /// A child with the text of the field, also when the text is empty. Returns the child's writer,
  /// for its attributes.
  template <class Field>
  NodeWriter Child(std::string_view name, Field const& field) {
    return {Append(name, TextOf(field)), m_document};
  }
  /// A child filled by the object; nothing when the object is null.
  template <class T>
  void Child(std::string_view name, SmartPtr<T> const& object) {
    if (object) object->CreateXMLNode(Into(name).Node());
  }
  template <class T>
  void Child(std::string_view name, LazyPart<T> const& part) {
    Child(name, part.Get());
  }
  /// The same, but an empty child when the object is null.
  template <class T>
  void ChildOrEmpty(std::string_view name, SmartPtr<T> const& object) {
    NodeWriter const child = Into(name);
    if (object) object->CreateXMLNode(child.Node());
  }
  template <class Field, class ToText>
  void Child(std::string_view name, Field field, ToText toText) {
    Append(name, toText(field));
  }
  /// A child named by the object, which has a `GetNodeName`; nothing when the object is null.
  template <class T>
  void Named(std::string const& prefix, SmartPtr<T> const& object) {
    if (object) Child(prefix + object->GetNodeName(), object);
  }

  /// As `Child`, but nothing for an empty text, 0 or false.
  template <class Field>
  void ChildIfSet(std::string_view name, Field const& field) {
    if (!(field == Field())) Child(name, field);
  }
  template <class Field, class ToText>
  void ChildIfSet(std::string_view name, Field field, ToText toText) {
    if (field != Field()) Child(name, field, toText);
  }

  /// A child per entry; a null entry leaves its child empty.
  template <class T>
  void Children(std::string_view name, std::vector<SmartPtr<T>> const& list) {
    for (SmartPtr<T> const& entry : list) ChildOrEmpty(name, entry);
  }
  template <class Item>
  void Children(std::string_view name, std::vector<Item> const& list) {
    for (Item const& entry : list) Child(name, entry);
  }
  template <class Item, class ToText>
  void Children(std::string_view name, std::vector<Item> const& list, ToText toText) {
    for (Item entry : list) Child(name, entry, toText);
  }

  /// A wrapper with a child per entry; nothing when the list is empty.
  template <class Item, class... ToText>
  void List(std::string_view name, std::string_view item, std::vector<Item> const& list,
            ToText... toText) {
    if (!list.empty()) Into(name).Children(item, list, toText...);
  }

  /// A new, empty child.
  NodeWriter Into(std::string_view name) { return NodeWriter(Append(name, {}), m_document); }

  /// An attribute of the element itself.
  template <class Field>
  void Attribute(std::string_view name, Field const& field) {
    AppendAttribute(name, TextOf(field));
  }

  /// The text of the element itself.
  template <class Field>
  void Text(Field const& field) {
    SetText(TextOf(field));
  }

  /// The element; null when nothing is to be written into it.
  XmlNode<char>* Node() const { return m_document == nullptr ? nullptr : m_node; }

 private:
  NodeWriter(XmlNode<char>* node, XmlDocument<char>* document)
      : m_node(node), m_document(document) {}

  static std::string_view TextOf(std::string const& text) { return text; }
  static std::string_view TextOf(OptionalPart<std::string> const& text) { return text.Get(); }
  static std::string_view TextOf(char const* text) { return text; }
  static std::string_view TextOf(std::string_view text) { return text; }
  template <class Flag>
  static std::enable_if_t<std::is_same_v<Flag, bool>, std::string_view> TextOf(Flag flag) {
    return BooleanText(flag);
  }
  template <class Number>
  static std::enable_if_t<std::is_same_v<Number, int> || std::is_same_v<Number, double>, NumberText>
  TextOf(Number number) {
    return NumberText(number);
  }

  XmlNode<char>* Append(std::string_view name, std::string_view text);
  void SetText(std::string_view text);
  void AppendAttribute(std::string_view name, std::string_view text);

  XmlNode<char>* m_node;
  XmlDocument<char>* m_document;  // null: nothing is written
};

}  // namespace lumo
