#include "lumo/xml/GrowingTree.h"

#include <cstddef>
#include <deque>
#include <exception>
#include <new>

#include "lumo/xml/NodePool.h"
#include "lumo/xml/PlainXml.h"
#include "lumo/xml/XMLUtilites.h"

namespace lumo {

char const kGrowing[1] = "";

namespace {

/// The tree of a reply as far as it has grown. The elements from the envelope to the lists are
/// open, each inside the one before, and what is parsed next belongs to the innermost. All other
/// nodes are what RapidXML would make of the same bytes, but for zeros behind names and values.
class GrowingTree {
 public:
  explicit GrowingTree(std::string const& text) : m_xml(text) {}

  XmlNode<char> const* FindResponse(std::string_view name);
  /// Reads on to the end, which must be well-formed.
  void Finish();

  struct Element : XmlNode<char> {
    Element(GrowingTree& itsTree, Element* itsOuter)
        : XmlNode<char>(rapidxml::node_element), tree(itsTree), outer(itsOuter) {}
    GrowingTree& tree;
    Element* outer;
    bool isOpen = true;
    bool isCut = false;        // its last children were parsed, but not kept
    std::string_view dropped;  // local name of the entries that are gone
  };

  template <class Matches>
  XmlNode<char>* Find(Element& element, Matches matches, bool mayGrow);
  XmlNode<char>* NextItem(Element& element, std::string_view name);
  void Complete(Element& element);

 private:
  bool NextChild(Element& element, std::string_view& name);
  void Close(Element& element);
  XmlNode<char>* Open(std::string_view name);
  XmlNode<char>* Keep(Element& parent, std::string_view name);
  XmlNode<char>* Item(Element& parent, std::string_view name);
  void DropItem();

  bool StartElement(XmlNode<char>& element, std::string_view name);
  bool ReadLeaf(XmlNode<char>& element);
  void ReadContent(XmlNode<char>& top);
  void AppendText(XmlNode<char>& element);
  std::string_view TextOf(RawText const& raw);

  PlainXml m_xml;
  NodePool m_pool;
  std::deque<Element> m_elements;  // all that were ever open
  Element* m_innermost = nullptr;
  int m_depth = 0;
  Element* m_itemOwner = nullptr;  // parent of the entry at hand, its last child
  NodePool::Mark m_itemMark;
};

GrowingTree::Element& Growing(XmlNode<char> const& element) {
  return static_cast<GrowingTree::Element&>(const_cast<XmlNode<char>&>(element));
}

std::string_view NameOf(XmlNode<char> const& node) { return {node.name(), node.name_size()}; }

XmlNode<char> const* GrowingTree::FindResponse(std::string_view name) {
  m_xml.SkipProlog();
  XmlNode<char>* node = Open(m_xml.StartTag());
  if (NameOf(*node) != "s:Envelope" || !IsGrowing(*node)) throw NotPlain();
  node = Find(
      Growing(*node), [](std::string_view child) { return child == "s:Body"; }, true);
  if (node == nullptr || !IsGrowing(*node)) throw NotPlain();
  return FindGrowing(*node, name, true);
}

void GrowingTree::Finish() {
  while (m_innermost != nullptr) Close(*m_innermost);
  m_xml.SkipEpilog();
}

/// Moves on to the next child, whose start tag was begun; false at the end of the element.
bool GrowingTree::NextChild(Element& element, std::string_view& name) {
  DropItem();
  if (!element.isOpen) return false;
  while (m_innermost != &element) Close(*m_innermost);
  for (;;) {
    switch (m_xml.Next()) {
      case PlainXml::Piece::StartTag: name = m_xml.StartTag(); return true;
      case PlainXml::Piece::Text: AppendText(element); break;
      case PlainXml::Piece::EndTag:
        m_xml.EndTag(NameOf(element));
        element.isOpen = false;
        m_innermost = element.outer;
        --m_depth;
        return false;
    }
  }
}

/// Reads the element to its end without keeping anything.
void GrowingTree::Close(Element& element) {
  std::string_view name;
  while (NextChild(element, name)) {
    Item(element, name);
    element.isCut = true;
  }
}

template <class Matches>
XmlNode<char>* GrowingTree::Find(Element& element, Matches matches, bool mayGrow) {
  for (auto* child = element.first_node(); child != nullptr; child = child->next_sibling()) {
    if (matches(NameOf(*child))) return child;
  }
  std::string_view name;
  while (NextChild(element, name)) {
    bool const isFound = matches(name);
    XmlNode<char>* const child = isFound && mayGrow ? Open(name) : Keep(element, name);
    if (isFound) return child;
  }
  if (element.isCut) throw NotPlain();
  return nullptr;
}

XmlNode<char>* GrowingTree::NextItem(Element& element, std::string_view name) {
  bool const isGone = element.isCut || HasLocalName(element.dropped, name);
  if (!element.isOpen && isGone) throw NotPlain();
  std::string_view found;
  while (NextChild(element, found)) {
    if (HasLocalName(found, name)) {
      element.dropped = found;
      return Item(element, found);
    }
    Keep(element, found);
  }
  return nullptr;
}

void GrowingTree::Complete(Element& element) {
  std::string_view name;
  while (NextChild(element, name)) Keep(element, name);
  if (element.isCut || !element.dropped.empty()) throw NotPlain();
}

/// A child of the innermost element that grows.
XmlNode<char>* GrowingTree::Open(std::string_view name) {
  Element& element = m_elements.emplace_back(*this, m_innermost);
  if (m_innermost != nullptr) m_innermost->append_node(&element);
  if (StartElement(element, name)) {
    element.value(kGrowing, 0);
    m_innermost = &element;
    ++m_depth;
  }
  return &element;
}

/// A child that is whole and stays.
XmlNode<char>* GrowingTree::Keep(Element& parent, std::string_view name) {
  XmlNode<char>* const element = m_pool.MakeNode(rapidxml::node_element);
  parent.append_node(element);
  if (StartElement(*element, name)) ReadContent(*element);
  return element;
}

/// A child that is whole and goes when the next one comes.
XmlNode<char>* GrowingTree::Item(Element& parent, std::string_view name) {
  m_itemMark = m_pool.GetMark();
  m_itemOwner = &parent;
  return Keep(parent, name);
}

void GrowingTree::DropItem() {
  if (m_itemOwner == nullptr) return;
  m_itemOwner->remove_last_node();
  m_itemOwner = nullptr;
  m_pool.ReturnTo(m_itemMark);
}

/// Reads the start tag; true when content and an end tag follow.
bool GrowingTree::StartElement(XmlNode<char>& element, std::string_view name) {
  element.name(name.data(), name.size());
  RawText value{};
  while (m_xml.Attribute(name, value)) {
    XmlAttribute<char>* const attribute = m_pool.MakeAttribute();
    attribute->name(name.data(), name.size());
    std::string_view const text = TextOf(value);
    attribute->value(text.data(), text.size());
    element.append_attribute(attribute);
  }
  return m_xml.EndStartTag();
}

/// Reads to the end tag when there is text alone, as in most elements.
bool GrowingTree::ReadLeaf(XmlNode<char>& element) {
  if (!m_xml.IsAtText()) return false;
  AppendText(element);
  if (!m_xml.IsAtEndTag()) return false;
  m_xml.EndTag(NameOf(element));
  return true;
}

/// Reads everything to the end tag of an element, without recursion.
void GrowingTree::ReadContent(XmlNode<char>& top) {
  XmlNode<char>* element = &top;
  for (int depth = m_depth + 1;;) {
    switch (m_xml.Next()) {
      case PlainXml::Piece::StartTag: {
        if (depth == kMaxDepth) throw NotPlain();
        XmlNode<char>* const child = m_pool.MakeNode(rapidxml::node_element);
        element->append_node(child);
        if (!StartElement(*child, m_xml.StartTag()) || ReadLeaf(*child)) break;
        element = child;
        ++depth;
        break;
      }
      case PlainXml::Piece::Text: AppendText(*element); break;
      case PlainXml::Piece::EndTag:
        m_xml.EndTag(NameOf(*element));
        if (element == &top) return;
        element = element->parent();
        --depth;
        break;
    }
  }
}

/// The first text of an element is its value, too.
void GrowingTree::AppendText(XmlNode<char>& element) {
  std::string_view const text = TextOf(m_xml.Text());
  XmlNode<char>* const data = m_pool.MakeNode(rapidxml::node_data);
  data->value(text.data(), text.size());
  element.append_node(data);
  if (element.value_size() == 0 && !IsGrowing(element)) element.value(text.data(), text.size());
}

std::string_view GrowingTree::TextOf(RawText const& raw) {
  if (!raw.hasReferences) return raw.bytes;
  char* const text = m_pool.MakeText(raw.bytes.size());
  return {text, static_cast<std::size_t>(PlainXml::Decode(raw.bytes, text) - text)};
}

}  // namespace

bool ReadWhileParsed(std::string const& reply, std::string_view name,
                     std::function<void(XmlNode<char> const*)> const& read) {
  try {
    GrowingTree tree(reply);
    XmlNode<char> const* const element = tree.FindResponse(name);
    if (element == nullptr) return false;
    read(element);
    tree.Finish();
    return true;
  } catch (std::exception const&) {
    return false;  // whatever it is, it happens again where the whole tree is read
  }
}

void RequireWholeTree(XmlNode<char> const& node) {
  for (XmlNode<char> const* at = &node; at != nullptr; at = at->parent()) {
    if (IsGrowing(*at)) throw NotPlain();
  }
}

XmlNode<char>* FindGrowing(XmlNode<char> const& element, std::string_view name, bool mayGrow) {
  GrowingTree::Element& growing = Growing(element);
  if (HasLocalName(growing.dropped, name)) throw NotPlain();
  return growing.tree.Find(
      growing, [name](std::string_view child) { return HasLocalName(child, name); }, mayGrow);
}

XmlNode<char>* NextGrowing(XmlNode<char> const& element, std::string_view name) {
  GrowingTree::Element& growing = Growing(element);
  return growing.tree.NextItem(growing, name);
}

XmlNode<char>* CompleteGrowing(XmlNode<char> const& element) {
  GrowingTree::Element& growing = Growing(element);
  growing.tree.Complete(growing);
  return growing.first_node();
}

}  // namespace lumo
