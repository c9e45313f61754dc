#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lumo {

/// One word of an enumeration and the value it stands for.
template <class Enum>
struct Word {
  Enum value;
  std::string_view text;
};

/// The first word whose `part`, its value or its text, is `wanted`; null when there is none.
template <class Enum, std::size_t N, class Part>
constexpr Word<Enum> const* FindWord(Word<Enum> const (&words)[N], Part Word<Enum>::*part,
                                     Part wanted) {
  for (Word<Enum> const& word : words) {
    if (word.*part == wanted) return &word;
  }
  return nullptr;
}

/// Text of `value`; `fallback` for a value without a word.
template <class Enum, std::size_t N>
std::string WordOf(Word<Enum> const (&words)[N], Enum value, std::string_view fallback) {
  Word<Enum> const* const word = FindWord(words, &Word<Enum>::value, value);
  return std::string(word == nullptr ? fallback : word->text);
}

/// Value of `text`, matched exactly; `fallback` for an unknown word.
template <class Enum, std::size_t N>
Enum ValueOf(Word<Enum> const (&words)[N], std::string_view text, Enum fallback) {
  Word<Enum> const* const word = FindWord(words, &Word<Enum>::text, text);
  return word == nullptr ? fallback : word->value;
}

/// Words that are known between library start-up and shut-down; without it every text is unknown.
template <class Enum, std::size_t N>
class WordTable {
 public:
  explicit constexpr WordTable(Word<Enum> const (&words)[N]) : m_words(words) {}
  void Fill() { m_isFilled = true; }
  void Clear() { m_isFilled = false; }
  Enum ValueOf(std::string_view text) const {
    return m_isFilled ? lumo::ValueOf(m_words, text, Enum()) : Enum();
  }

 private:
  Word<Enum> const (&m_words)[N];
  bool m_isFilled = false;
};

}  // namespace lumo
