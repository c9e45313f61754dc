#include "lumo/toolkit/Names.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

/// More are no help to choose from.
constexpr std::size_t kFewNames = 8;

bool IsPartOfWord(char c) {
  return (c >= '0' && c <= '9') || (Lower(c) >= 'a' && Lower(c) <= 'z') ||
         static_cast<unsigned char>(c) >= 0x80U;  // a letter beyond ASCII
}

std::vector<std::string_view> WordsOf(std::string_view text) {
  std::vector<std::string_view> words;
  auto at = text.begin();
  while (at != text.end()) {
    auto const begin = std::find_if(at, text.end(), IsPartOfWord);
    at = std::find_if_not(begin, text.end(), IsPartOfWord);
    if (begin != at) {
      words.push_back(text.substr(static_cast<std::size_t>(begin - text.begin()),
                                  static_cast<std::size_t>(at - begin)));
    }
  }
  return words;
}

/// Whether each of the words is the beginning of a word of the name.
bool HasWords(std::string_view name, std::vector<std::string_view> const& words) {
  std::vector<std::string_view> const there = WordsOf(name);
  return !words.empty() && std::all_of(words.begin(), words.end(), [&](std::string_view word) {
    return std::any_of(there.begin(), there.end(),
                       [&](std::string_view one) { return StartsIgnoringCase(one, word); });
  });
}

template <class Fits>
std::vector<std::size_t> PlacesWhere(std::vector<std::string> const& names, Fits fits) {
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (fits(names[i])) places.push_back(i);
  }
  return places;
}

std::vector<std::size_t> BestPlaces(std::vector<std::string> const& names,
                                    std::string const& name) {
  auto places = PlacesWhere(names, [&](std::string const& one) { return one == name; });
  if (!places.empty()) return places;
  places = PlacesWhere(names, [&](std::string const& one) { return EqualIgnoringCase(one, name); });
  if (!places.empty() || Trimmed(name).empty()) return places;
  places =
      PlacesWhere(names, [&](std::string const& one) { return StartsIgnoringCase(one, name); });
  if (!places.empty()) return places;
  std::vector<std::string_view> const words = WordsOf(name);
  return PlacesWhere(names, [&](std::string const& one) { return HasWords(one, words); });
}

/// What stands between the commas, where one of it is a name by itself; nothing otherwise.
std::vector<std::string> SeveralNames(std::vector<std::string> const& names,
                                      std::string const& text) {
  std::vector<std::string> parts;
  bool isNamed = false;
  for (std::size_t at = 0, end = 0; end != std::string::npos; at = end + 1) {
    end = text.find(',', at);
    std::string_view const part = Trimmed(std::string_view(text).substr(at, end - at));
    if (part.empty()) continue;
    parts.emplace_back(part);
    isNamed = isNamed || BestPlaces(names, parts.back()).size() == 1;
  }
  return isNamed && parts.size() > 1 ? parts : std::vector<std::string>();
}

std::string Plural(std::string const& what) {
  return what.back() == 'y' ? what.substr(0, what.size() - 1) + "ies" : what + "s";
}

[[noreturn]] void ThrowAmbiguous(std::vector<std::string> const& names,
                                 std::vector<std::size_t> const& places, std::string const& name,
                                 std::string const& what) {
  std::vector<std::string> candidates;
  candidates.reserve(places.size());
  for (std::size_t const place : places) candidates.push_back(names[place]);
  std::vector<std::string> few(
      candidates.begin(),
      candidates.begin() + static_cast<std::ptrdiff_t>(std::min(kFewNames, candidates.size())));
  std::string const text = Quoted(name) + " may be any of " + std::to_string(candidates.size()) +
                           " " + Plural(what) + ": " + Joined(few) +
                           (few.size() < candidates.size() ? ", ..." : "");
  throw Error(ErrorCode::Ambiguous, text, Hint{HintCode::OneOf, std::move(candidates)});
}

}  // namespace

void ThrowNotFound(std::string const& what, std::string const& name,
                   std::vector<std::string> const& names) {
  Hint hint = {HintCode::NameEach, SeveralNames(names, name)};
  if (hint.arguments.empty()) hint = {HintCode::DidYouMean, Alike(name, names)};
  if (hint.arguments.empty()) {
    hint = names.size() <= kFewNames && !names.empty() ? Hint{HintCode::OneOf, names} : Hint();
  }
  throw Error(ErrorCode::NotFound, "there is no " + what + " " + Quoted(name), std::move(hint));
}

std::optional<std::size_t> TryName(std::vector<std::string> const& names, std::string const& name,
                                   std::string const& what) {
  std::vector<std::size_t> const places = BestPlaces(names, name);
  if (places.size() > 1) ThrowAmbiguous(names, places, name, what);
  return places.empty() ? std::nullopt : std::optional<std::size_t>(places[0]);
}

std::size_t FindName(std::vector<std::string> const& names, std::string const& name,
                     std::string const& what) {
  auto const place = TryName(names, name, what);
  if (!place) ThrowNotFound(what, name, names);
  return *place;
}

std::string PathBelow(std::string const& folder, std::string const& name) {
  std::string path = folder.empty() ? "" : folder + "/";
  for (char const c : name) {
    if (c == '/' || c == '\\') path += '\\';
    path += c;
  }
  return path;
}

std::vector<std::string> PathParts(std::string const& path) {
  std::vector<std::string> parts;
  std::string part;
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (path[i] == '/') {
      if (!part.empty()) parts.push_back(std::exchange(part, {}));
    } else {
      if (path[i] == '\\' && i + 1 < path.size()) ++i;
      part += path[i];
    }
  }
  if (!part.empty()) parts.push_back(part);
  return parts;
}

}  // namespace lumo
