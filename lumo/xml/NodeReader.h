#pragma once

#include <cassert>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "lumo/platform/core/LazyPart.h"
#include "lumo/platform/core/OptionalPart.h"
#include "lumo/platform/core/SmartPtr.h"
#include "lumo/xml/ConvertTo.h"
#include "lumo/xml/GrowingTree.h"
#include "lumo/xml/XMLUtilites.h"

namespace lumo {

/// Reads fields from the children of one element, a line per field:
///
///     lumo::NodeReader in(node);
///     in.Child("dbKey", m_dbKey);
///     in.In("tableDetails").Children("table", m_tableDetails);
///
/// Names are local names, without ":". What is absent leaves its field unchanged, and a null node
/// has nothing. Numbers and booleans that do not convert throw, see `lumo::IntegerFromText`.
/// Enumerations pass the function that makes a value from a text as the last argument. Ask for each
/// name once, which debug builds assert: fields read in the order of the wire cost one walk over
/// the children in all.
class LUMO_API NodeReader {
 public:
  explicit NodeReader(XmlNode<char> const* node)
      : m_node(node), m_next(node == nullptr ? nullptr : node->first_node()) {}

  /// Reads the first such child; false when there is none.
  template <class Field>
  bool Child(std::string_view name, Field& field) {
    XmlNode<char> const* const child = Find(name);
    if (child == nullptr) return false;
    ReadNode(*child, field);
    return true;
  }
  template <class Field, class FromText>
  bool Child(std::string_view name, Field& field, FromText fromText) {
    XmlNode<char> const* const child = Find(name);
    if (child == nullptr) return false;
    WithText(*child, [&](std::string_view text) { field = Convert(fromText, text); });
    return true;
  }

  /// Appends every such child to the list, in document order.
  template <class Item>
  void Children(std::string_view name, std::vector<Item>& list) {
    ForEach(name, [&list](XmlNode<char> const& child) {
      list.emplace_back();
      ReadNode(child, list.back());
    });
  }
  template <class Item, class FromText>
  void Children(std::string_view name, std::vector<Item>& list, FromText fromText) {
    ForEach(name, [&](XmlNode<char> const& child) {
      WithText(child, [&](std::string_view text) { list.push_back(Convert(fromText, text)); });
    });
  }

  /// Calls `visit(child)` for every such child, in document order.
  template <class Visit>
  void ForEach(std::string_view name, Visit visit) const {
    if (m_node == nullptr) return;
    for (auto* child = m_node->first_node(); child != nullptr; child = child->next_sibling()) {
      if (HasLocalName(*child, name)) visit(*child);
    }
    if (!IsGrowing(*m_node)) return;
    while (auto* const item = NextGrowing(*m_node, name)) visit(*item);
  }

  /// Calls `visit(child)` for every child element, whatever its name.
  template <class Visit>
  void ForEachChild(Visit visit) const {
    if (m_node == nullptr) return;
    for (auto* child = FirstChild(*m_node); child != nullptr; child = child->next_sibling()) {
      if (child->type() == rapidxml::node_element) visit(*child);
    }
  }

  /// Steps over the next children that have these names: a base has read them, by a reader of its
  /// own.
  void StepOver(std::initializer_list<std::string_view> names) {
    for (std::string_view const name : names) {
      if (m_next != nullptr && HasLocalName(*m_next, name)) m_next = m_next->next_sibling();
    }
  }

  /// Steps inside the first such child.
  NodeReader In(std::string_view name) { return NodeReader(Find(name, true)); }

  /// The first child that was not read; the first of all once one was passed over.
  XmlNode<char> const* Rest() const { return m_passedOver ? m_node->first_node() : m_next; }

  /// Reads an attribute of the element itself; false when there is none.
  template <class Field>
  bool Attribute(std::string_view name, Field& field) const {
    XmlAttribute<char> const* const attribute = FindAttribute(name);
    if (attribute == nullptr) return false;
    ReadText(RawValue(*attribute), field);
    return true;
  }
  template <class Field, class FromText>
  bool Attribute(std::string_view name, Field& field, FromText fromText) const {
    XmlAttribute<char> const* const attribute = FindAttribute(name);
    if (attribute == nullptr) return false;
    field = Convert(fromText, RawValue(*attribute));
    return true;
  }

  /// Whether the element's attribute "type" has `word` in it: such attributes name their class with
  /// a prefix that is the server's choice.
  bool TypeContains(std::string_view word) const;

  /// Reads the element's own text.
  template <class Field>
  void Text(Field& field) const {
    if (m_node != nullptr) ReadNode(*m_node, field);
  }

 private:
  /// In the order of the wire the child is the next one, or there is none left.
  XmlNode<char> const* Find(std::string_view name, bool mayGrow = false) {
    assert(!WasRead(name) && "a name is asked for once");
    if (m_passedOver) return Search(name, mayGrow);
    if (m_next != nullptr && HasLocalName(*m_next, name)) {
      return std::exchange(m_next, m_next->next_sibling());
    }
    bool const isAtEnd = m_next == nullptr && (m_node == nullptr || !IsGrowing(*m_node));
    return isAtEnd ? nullptr : Search(name, mayGrow);
  }
  XmlNode<char> const* Search(std::string_view name, bool mayGrow);
  bool WasRead(std::string_view name) const;
  XmlAttribute<char> const* FindAttribute(std::string_view name) const {
    return m_node == nullptr ? nullptr : FirstNamed(m_node->first_attribute(), name);
  }

  static void ReadText(std::string_view text, std::string& field) { field.assign(text); }
  static void ReadText(std::string_view text, int& field) { field = IntegerFromText(text); }
  static void ReadText(std::string_view text, double& field) { field = RealFromText(text); }
  static void ReadText(std::string_view text, bool& field) { field = BooleanFromText(text); }

  template <class T>
  static void ReadNode(XmlNode<char> const& node, SmartPtr<T>& field) {
    field = T::CreateOne(&node);
  }
  template <class T>
  static void ReadNode(XmlNode<char> const& node, LazyPart<T>& field) {
    field = T::CreateOne(&node);
  }
  template <class T>
  static void ReadNode(XmlNode<char> const& node, OptionalPart<T>& field) {
    ReadNode(node, field.Make());
  }
  template <class Field>
  static void ReadNode(XmlNode<char> const& node, Field& field) {
    WithText(node, [&field](std::string_view text) { ReadText(text, field); });
  }

  /// Calls `use` with the text of an element, in place where it is in one piece.
  template <class Use>
  static void WithText(XmlNode<char> const& node, Use use) {
    XmlNode<char> const* const only = FirstChild(node);
    if (only == nullptr) return use(RawValue(node));
    if (only->next_sibling() == nullptr && only->type() == rapidxml::node_data) {
      return use(RawValue(*only));
    }
    use(std::string_view(XMLUtilites::GetText(&node)));
  }

  template <class FromText>
  static auto Convert(FromText fromText, std::string_view text) {
    if constexpr (std::is_invocable_v<FromText, std::string_view>) {
      return fromText(text);
    } else {
      return fromText(std::string(text));
    }
  }

  XmlNode<char> const* m_node;
  XmlNode<char> const* m_next;  // first child behind those already read
  bool m_passedOver = false;    // an unread child lies before m_next: search from the start
};

}  // namespace lumo
