#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace lumo {

/// One word of an enumeration and the value it stands for.
template <class Enum>
struct Word {
  Enum value;
  std::string_view text;
};

/// Text of `value`; `fallback` for a value without a word.
template <class Enum, std::size_t N>
std::string WordOf(Word<Enum> const (&words)[N], Enum value, std::string_view fallback) {
  for (Word<Enum> const& word : words) {
    if (word.value == value) return std::string(word.text);
  }
  return std::string(fallback);
}

/// Value of `text`, matched exactly; `fallback` for an unknown word.
template <class Enum, std::size_t N>
Enum ValueOf(Word<Enum> const (&words)[N], std::string_view text, Enum fallback) {
  for (Word<Enum> const& word : words) {
    if (word.text == text) return word.value;
  }
  return fallback;
}

/// Words that are looked up in a table which library start-up fills and shut-down empties; without
/// it every text is unknown.
template <class Enum>
class WordTable {
 public:
  template <std::size_t N>
  void Fill(Word<Enum> const (&words)[N]) {
    for (Word<Enum> const& word : words) m_values.emplace(word.text, word.value);
  }
  void Clear() { m_values.clear(); }
  Enum ValueOf(std::string_view text) const {
    auto const found = m_values.find(text);
    return found == m_values.end() ? Enum() : found->second;
  }

 private:
  std::unordered_map<std::string_view, Enum> m_values;
};

}  // namespace lumo
