#pragma once

#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace sandbox {

/// What is wrong with a request; its text becomes the fault's.
class Fault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One of the five services as its requests name it.
struct Service {
  std::string_view name;    ///< end of path and namespace
  std::string_view prefix;  ///< bound to the namespace in requests
};

/// Namespace URI below the vendor's base and the interface version, such as ".../16/01/Browse".
std::string VersionedNamespace(std::string_view name);

/// The body of a well-formed envelope for this service; throws `Fault` for anything that the
/// client must not send: names, prefixes, namespaces, order and declaration are all held.
pugi::xml_node CheckEnvelope(pugi::xml_document const& document, Service const& service);

/// Adds an envelope to the empty `document` and in it the response's element, which is returned.
/// Base types take the prefix "b".
pugi::xml_node StartReply(pugi::xml_document& document, Service const& service,
                          std::string const& element);

/// Who is to blame for a fault.
enum class Blame { Client, Server };
std::string FaultReply(Blame blame, std::string const& text);
std::string Print(pugi::xml_document const& document);

/// Appends `<name>text</name>`.
pugi::xml_node AddText(pugi::xml_node parent, char const* name, std::string const& text);

}  // namespace sandbox
