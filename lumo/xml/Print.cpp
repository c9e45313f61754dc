#include "lumo/xml/Print.h"

#include <array>
#include <cstddef>

#include "lumo/xml/XMLUtilites.h"

namespace {

/// Reference by which a character is written; null for one that stands for itself.
constexpr char const* ReferenceOf(char c) {
  switch (c) {
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '\'': return "&apos;";
    case '"': return "&quot;";
    case '&': return "&amp;";
    default: return nullptr;
  }
}

constexpr std::array<bool, 256> MakeMarkup() {
  std::array<bool, 256> markup{};
  for (std::size_t c = 0; c < 128; ++c) markup[c] = ReferenceOf(static_cast<char>(c)) != nullptr;
  return markup;
}

constexpr auto kMarkup = MakeMarkup();

/// Appends `text` with the markup characters as references, except `keep`.
void AppendEscaped(std::string& out, std::string_view text, char keep = '\0') {
  std::size_t done = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!kMarkup[static_cast<unsigned char>(text[i])] || text[i] == keep) continue;
    out.append(text, done, i - done).append(ReferenceOf(text[i]));
    done = i + 1;
  }
  out.append(text, done);
}

std::string_view NameOf(XmlBase<char> const& item) { return {item.name(), item.name_size()}; }

void AppendAttributes(std::string& out, XmlNode<char> const& node) {
  for (auto* a = node.first_attribute(); a != nullptr; a = a->next_attribute()) {
    std::string_view const value = lumo::RawValue(*a);
    char const quote = value.find('"') == std::string_view::npos ? '"' : '\'';
    out.append(" ").append(NameOf(*a)).append("=").append(1, quote);
    AppendEscaped(out, value, quote == '"' ? '\'' : '"');
    out += quote;
  }
}

/// Appends a node that has no end tag to come: all but elements with children.
void AppendLeaf(std::string& out, XmlNode<char> const& node) {
  std::string_view const value = lumo::RawValue(node);
  switch (node.type()) {
    case rapidxml::node_element:
      out.append("<").append(NameOf(node));
      AppendAttributes(out, node);
      if (value.empty()) {
        out += "/>";
      } else {
        out += '>';
        AppendEscaped(out, value);
        out.append("</").append(NameOf(node)).append(">");
      }
      break;
    case rapidxml::node_data: AppendEscaped(out, value); break;
    case rapidxml::node_cdata: out.append("<![CDATA[").append(value).append("]]>"); break;
    case rapidxml::node_comment: out.append("<!--").append(value).append("-->"); break;
    case rapidxml::node_doctype: out.append("<!DOCTYPE ").append(value).append(">"); break;
    case rapidxml::node_pi:
      out.append("<?").append(NameOf(node)).append(" ").append(value).append("?>");
      break;
    case rapidxml::node_declaration:
      out += "<?xml";
      AppendAttributes(out, node);
      out += "?>";
      break;
    case rapidxml::node_document: break;
  }
}

/// Walks the tree without recursion: what a caller built may be deeper than any reply.
void AppendChildren(std::string& out, XmlNode<char> const& top) {
  XmlNode<char> const* node = top.first_node();
  while (node != nullptr) {
    bool const descend = node->type() == rapidxml::node_element && node->first_node() != nullptr;
    if (descend) {
      out.append("<").append(NameOf(*node));
      AppendAttributes(out, *node);
      out += '>';
      node = node->first_node();
      continue;
    }
    AppendLeaf(out, *node);
    while (node->next_sibling() == nullptr) {
      node = node->parent();
      if (node == &top) return;
      out.append("</").append(NameOf(*node)).append(">");
    }
    node = node->next_sibling();
  }
}

}  // namespace

std::string XMLUtilites::Print(XmlDocument<char> const& document) {
  std::string text;
  text.reserve(1024);
  AppendChildren(text, document);
  return text;
}

std::string lumo::PrintContent(XmlNode<char> const* element) {
  std::string text;
  if (element != nullptr) AppendChildren(text, *element);
  return text;
}
