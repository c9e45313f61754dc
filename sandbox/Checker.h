#pragma once

#include <pugixml.hpp>
#include <string>

namespace sandbox {

/// Walks the children of an element in the order in which they must come. Everything that is
/// unknown, repeated or out of place, and every attribute, ends in a `Fault` that names it.
class Checker {
 public:
  explicit Checker(pugi::xml_node parent);

  /// The next child when it has that name, prefix included; otherwise a null node.
  pugi::xml_node Optional(char const* name);
  pugi::xml_node Required(char const* name);
  bool HasMore() const { return !m_next.empty(); }
  /// Nothing may be left.
  void End() const;

 private:
  pugi::xml_node m_parent;
  pugi::xml_node m_next;
};

/// Text of an element that holds nothing but text.
std::string TextOf(pugi::xml_node node);
/// Text of an element that is not sent when there is nothing to say.
std::string FilledTextOf(pugi::xml_node node);
/// Text as a decimal integer.
int IntegerOf(pugi::xml_node node);
/// An identity, which is never 0: one that is not set is not sent.
int IdentityOf(pugi::xml_node node);

}  // namespace sandbox
