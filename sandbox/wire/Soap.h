#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "sandbox/Fault.h"

namespace sandbox {

/// One of the five services as its requests name it.
struct Service {
  std::string_view name;    ///< end of path and namespace
  std::string_view prefix;  ///< bound to the namespace in requests
};

/// The namespaces that a server speaks, all below the vendor's base.
class Namespaces {
 public:
  /// A base without "/" at its end gets one; an empty one is the base that the build set.
  explicit Namespaces(std::string base = "");
  /// Below the base and the interface version, such as ".../16/01/Browse".
  std::string Versioned(std::string_view name) const;
  std::string Headers() const { return m_base + "headers"; }

 private:
  std::string m_base;
};

/// The body of a well-formed envelope for this service; throws `Fault` for anything that the
/// client must not send: names, prefixes, namespaces, order and declaration are all held.
pugi::xml_node CheckEnvelope(pugi::xml_document const& document, Service const& service,
                             Namespaces const& namespaces);

/// Adds an envelope to the empty `document` and in it the response's element, which is returned.
/// Base types take the prefix "b".
pugi::xml_node StartReply(pugi::xml_document& document, Service const& service,
                          Namespaces const& namespaces, std::string const& element);

std::string FaultReply(Blame blame, std::string const& text);
std::string Print(pugi::xml_document const& document);

/// Appends `<name>text</name>`.
pugi::xml_node AddText(pugi::xml_node parent, char const* name, std::string const& text);

}  // namespace sandbox
