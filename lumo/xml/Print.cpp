#include "lumo/xml/Print.h"

#include <vector>

#include "lumo/xml/PlainXml.h"
#include "lumo/xml/TextOut.h"
#include "lumo/xml/XMLUtilites.h"

namespace {

using lumo::PlainXml;
using lumo::TextOut;

constexpr std::size_t kExpectedDocument = 1024;

std::string_view NameOf(XmlBase<char> const& item) { return {item.name(), item.name_size()}; }

void PutAttribute(TextOut& out, std::string_view name, std::string_view value) {
  char const quote = value.find('"') == std::string_view::npos ? '"' : '\'';
  out.Put(' ').Put(name).Put('=').Put(quote);
  out.PutEscaped(value, quote == '"' ? '\'' : '"').Put(quote);
}

void PutAttributes(TextOut& out, XmlNode<char> const& node) {
  for (auto* a = node.first_attribute(); a != nullptr; a = a->next_attribute()) {
    PutAttribute(out, NameOf(*a), lumo::RawValue(*a));
  }
}

/// Puts a node that has no end tag to come: all but elements with children.
void PutLeaf(TextOut& out, XmlNode<char> const& node) {
  std::string_view const value = lumo::RawValue(node);
  switch (node.type()) {
    case rapidxml::node_element:
      out.Put('<').Put(NameOf(node));
      PutAttributes(out, node);
      if (value.empty()) {
        out.Put("/>");
      } else {
        out.Put('>').PutEscaped(value).Put("</").Put(NameOf(node)).Put('>');
      }
      break;
    case rapidxml::node_data: out.PutEscaped(value); break;
    case rapidxml::node_cdata: out.Put("<![CDATA[").Put(value).Put("]]>"); break;
    case rapidxml::node_comment: out.Put("<!--").Put(value).Put("-->"); break;
    case rapidxml::node_doctype: out.Put("<!DOCTYPE ").Put(value).Put('>'); break;
    case rapidxml::node_pi: out.Put("<?").Put(NameOf(node)).Put(' ').Put(value).Put("?>"); break;
    case rapidxml::node_declaration:
      out.Put("<?xml");
      PutAttributes(out, node);
      out.Put("?>");
      break;
    case rapidxml::node_document: break;
  }
}

/// Walks the tree without recursion: what a caller built may be deeper than any reply.
void PutChildren(TextOut& out, XmlNode<char> const& top) {
  XmlNode<char> const* node = top.first_node();
  while (node != nullptr) {
    bool const descend = node->type() == rapidxml::node_element && node->first_node() != nullptr;
    if (descend) {
      out.Put('<').Put(NameOf(*node));
      PutAttributes(out, *node);
      out.Put('>');
      node = node->first_node();
      continue;
    }
    PutLeaf(out, *node);
    while (node->next_sibling() == nullptr) {
      node = node->parent();
      if (node == &top) return;
      out.Put("</").Put(NameOf(*node)).Put('>');
    }
    node = node->next_sibling();
  }
}

/// Prints plain XML as it is read, without a tree.
class PlainPrinter {
 public:
  /// References make a text longer than its bytes, by little in most.
  explicit PlainPrinter(std::string const& bytes)
      : m_xml(bytes), m_out(bytes.size() + bytes.size() / 16 + 64) {}

  std::string Print() {
    m_xml.SkipProlog();
    PutStartTag();
    while (!m_open.empty()) PutNext();
    m_xml.SkipEpilog();
    return m_out.Take();
  }

 private:
  void PutNext() {
    PlainXml::Piece const piece = m_xml.Next();
    if (piece == PlainXml::Piece::EndTag) return PutEndTag();
    if (!m_hasContent) m_out.Put('>');
    m_hasContent = true;
    if (piece == PlainXml::Piece::StartTag) {
      PutStartTag();
    } else {
      m_out.PutEscaped(TextOf(m_xml.Text()));
    }
  }

  void PutStartTag() {
    if (m_open.size() == lumo::kMaxDepth) throw lumo::NotPlain();
    std::string_view const element = m_xml.StartTag();
    m_out.Put('<').Put(element);
    std::string_view name;
    lumo::RawText value{};
    while (m_xml.Attribute(name, value)) PutAttribute(m_out, name, TextOf(value));
    m_hasContent = !m_xml.EndStartTag();
    if (m_hasContent) {
      m_out.Put("/>");  // which is all that the element around it needs to know
    } else {
      m_open.push_back(element);
    }
  }

  void PutEndTag() {
    m_xml.EndTag(m_open.back());
    if (m_hasContent) {
      m_out.Put("</").Put(m_open.back()).Put('>');
    } else {
      m_out.Put("/>");
    }
    m_open.pop_back();
    m_hasContent = true;
  }

  std::string_view TextOf(lumo::RawText const& raw) {
    if (!raw.hasReferences) return raw.bytes;
    m_decoded.resize(raw.bytes.size());
    char* const begin = m_decoded.data();
    return {begin, static_cast<std::size_t>(PlainXml::Decode(raw.bytes, begin) - begin)};
  }

  PlainXml m_xml;
  TextOut m_out;
  std::vector<std::string_view> m_open;  // names of the elements around what comes next
  bool m_hasContent = false;             // the innermost of them has its ">"
  std::string m_decoded;
};

}  // namespace

std::string XMLUtilites::Print(XmlDocument<char> const& document) {
  TextOut text(kExpectedDocument);
  PutChildren(text, document);
  return text.Take();
}

std::string lumo::PrintContent(XmlNode<char> const* element) {
  TextOut text(0);
  if (element != nullptr) PutChildren(text, *element);
  return text.Take();
}

bool lumo::PrintPlain(std::string const& bytes, std::string& text) {
  try {
    text = PlainPrinter(bytes).Print();
    return true;
  } catch (NotPlain const&) {
    return false;
  }
}
