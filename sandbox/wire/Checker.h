#pragma once

#include <initializer_list>
#include <pugixml.hpp>
#include <string>

namespace sandbox {

/// Walks the children of an element in the order in which they must come. Everything that is
/// unknown, repeated or out of place, and every attribute that was not asked for, ends in a `Fault`
/// that names it.
class Checker {
 public:
  using Names = std::initializer_list<char const*>;
  explicit Checker(pugi::xml_node parent);

  /// The next child when it has that name, prefix included; otherwise a null node.
  /// `attributes` are those that it must carry, in their order.
  pugi::xml_node Optional(std::string const& name, Names attributes = {});
  pugi::xml_node Required(std::string const& name, Names attributes = {});
  /// The next child, whatever its name; a null node at the end.
  pugi::xml_node Next(Names attributes = {});
  /// As `Required`, but the attributes may be missing and come in any order.
  pugi::xml_node RequiredWithAnyOf(std::string const& name, Names attributes);
  bool IsNext(std::string const& name) const { return m_next.name() == name; }
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
/// Text as "true" or "false".
bool BooleanOf(pugi::xml_node node);
/// An attribute as "true" or "false".
bool IsTrue(pugi::xml_node node, char const* attribute);
/// Text as a number.
double RealOf(pugi::xml_node node);
/// Text as a decimal integer.
int IntegerOf(pugi::xml_node node);
/// An identity, which is never 0: one that is not set is not sent.
int IdentityOf(pugi::xml_node node);

}  // namespace sandbox
