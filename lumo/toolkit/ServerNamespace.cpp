#include "lumo/toolkit/ServerNamespace.h"

#include <cctype>

#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

/// What stands in the quotation marks behind an attribute's name; empty when nothing does.
std::string_view Attribute(std::string_view xml, std::string_view name) {
  std::size_t const at = xml.find(name);
  if (at == std::string_view::npos) return {};
  std::string_view rest = Trimmed(xml.substr(at + name.size()));
  if (rest.empty() || rest.front() != '=') return {};
  rest = Trimmed(rest.substr(1));
  bool const isQuoted = !rest.empty() && (rest.front() == '"' || rest.front() == '\'');
  std::size_t const end = isQuoted ? rest.find(rest.front(), 1) : std::string_view::npos;
  return end == std::string_view::npos ? std::string_view() : rest.substr(1, end - 1);
}

/// Takes the last part off a path, "Browse" off ".../16/01/Browse".
std::string_view TakeLast(std::string_view& path) {
  std::size_t const slash = path.rfind('/');
  if (slash == std::string_view::npos) return {};
  std::string_view const last = path.substr(slash + 1);
  path = path.substr(0, slash);
  return last;
}

bool IsNumber(std::string_view text) {
  for (char const c : text) {
    if (std::isdigit(static_cast<unsigned char>(c)) == 0) return false;
  }
  return !text.empty();
}

}  // namespace

std::optional<ServerNamespace> ServerNamespaceIn(std::string_view wsdl) {
  std::string_view base = Attribute(wsdl, "targetNamespace");
  if (TakeLast(base) != "Browse") return std::nullopt;
  std::string_view const month = TakeLast(base);
  std::string_view const year = TakeLast(base);
  if (base.empty() || !IsNumber(month) || !IsNumber(year)) return std::nullopt;
  return ServerNamespace{std::string(base) + "/", std::string(year).append("/").append(month)};
}

}  // namespace lumo
