#include "sandbox/wire/Checker.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "sandbox/Fault.h"

namespace sandbox {
namespace {

constexpr auto kNowhere = std::string_view::npos;

std::string Tag(pugi::xml_node node) { return "<" + std::string(node.name()) + ">"; }

}  // namespace

Checker::Checker(pugi::xml_node parent) : m_parent(parent), m_next(parent.first_child()) {
  // Blanks between elements are gone, but those of an element without children have been kept.
  bool const isText = m_next.type() == pugi::node_pcdata;
  if (isText && std::string_view(m_next.value()).find_first_not_of(" \t\n\r") == kNowhere) {
    m_next = m_next.next_sibling();
  }
}

pugi::xml_node Checker::Next(Names attributes) {
  pugi::xml_node const found = m_next;
  if (!found) return found;
  if (found.type() != pugi::node_element) throw Fault("text must not stand in " + Tag(m_parent));
  pugi::xml_attribute attribute = found.first_attribute();
  for (char const* const name : attributes) {
    if (std::string_view(attribute.name()) != name) {
      throw Fault(Tag(found) + " must carry the attribute " + name);
    }
    attribute = attribute.next_attribute();
  }
  if (attribute) throw Fault(Tag(found) + " must not carry the attribute " + attribute.name());
  m_next = m_next.next_sibling();
  return found;
}

pugi::xml_node Checker::Optional(std::string const& name, Names attributes) {
  return m_next.name() == name ? Next(attributes) : pugi::xml_node();
}

pugi::xml_node Checker::Required(std::string const& name, Names attributes) {
  if (pugi::xml_node const found = Optional(name, attributes)) return found;
  std::string const instead = !m_next                               ? "nothing"
                              : m_next.type() == pugi::node_element ? Tag(m_next)
                                                                    : "text";
  throw Fault(Tag(m_parent) + " must hold <" + name + "> here, but holds " + instead);
}

pugi::xml_node Checker::RequiredWithAnyOf(std::string const& name, Names attributes) {
  if (m_next.name() != name) return Required(name);  // ends in a fault
  for (pugi::xml_attribute const attribute : m_next.attributes()) {
    bool const isKnown = std::any_of(attributes.begin(), attributes.end(), [&](char const* known) {
      return std::string_view(attribute.name()) == known;
    });
    if (!isKnown) throw Fault(Tag(m_next) + " must not carry the attribute " + attribute.name());
  }
  pugi::xml_node const found = m_next;
  m_next = m_next.next_sibling();
  return found;
}

void Checker::End() const {
  if (!m_next) return;
  bool const isElement = m_next.type() == pugi::node_element;
  throw Fault((isElement ? Tag(m_next) : "text") + " must not stand here in " + Tag(m_parent));
}

std::string TextOf(pugi::xml_node node) {
  for (pugi::xml_node const child : node.children()) {
    if (child.type() != pugi::node_pcdata) throw Fault(Tag(node) + " must hold text only");
  }
  return node.text().get();
}

std::string FilledTextOf(pugi::xml_node node) {
  std::string text = TextOf(node);
  if (text.empty()) throw Fault(Tag(node) + " must not be empty");
  return text;
}

bool BooleanOf(pugi::xml_node node) {
  std::string const text = TextOf(node);
  if (text != "true" && text != "false") {
    throw Fault(Tag(node) + " must hold true or false, not \"" + text + "\"");
  }
  return text == "true";
}

bool IsTrue(pugi::xml_node node, char const* attribute) {
  std::string const text = node.attribute(attribute).value();
  if (text != "true" && text != "false") {
    throw Fault(std::string(attribute) + " must be true or false, not \"" + text + "\"");
  }
  return text == "true";
}

double RealOf(pugi::xml_node node) {
  std::string const text = TextOf(node);
  char const* const end = text.data() + text.size();
  double value = 0;
  auto const [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) {
    throw Fault(Tag(node) + " must hold a number, not \"" + text + "\"");
  }
  return value;
}

int IntegerOf(pugi::xml_node node) {
  std::string const text = TextOf(node);
  char const* const end = text.data() + text.size();
  int value = 0;
  auto const [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) {
    throw Fault(Tag(node) + " must hold an integer, not \"" + text + "\"");
  }
  return value;
}

int IdentityOf(pugi::xml_node node) {
  int const identity = IntegerOf(node);
  if (identity == 0) throw Fault(Tag(node) + " must not be 0: no entity has that identity");
  return identity;
}

}  // namespace sandbox
