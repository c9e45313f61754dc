#include "lumo/values/TypeCode.h"

#include <functional>
#include <mutex>
#include <set>

std::string const& lumo::KeptTypeCode(std::string_view code) {
  static auto* const mutex = new std::mutex();
  static auto* const codes = new std::set<std::string, std::less<>>();
  std::lock_guard<std::mutex> const lock(*mutex);
  auto const found = codes->find(code);
  return found == codes->end() ? *codes->emplace(code).first : *found;
}
