#include "lumo/xml/TextOut.h"

#include <array>

namespace lumo {
namespace {

using References = std::array<std::string_view, 256>;

/// References by which characters are written; empty for one that stands for itself.
constexpr References MakeReferences() {
  References references{};
  references['<'] = "&lt;";
  references['>'] = "&gt;";
  references['\''] = "&apos;";
  references['"'] = "&quot;";
  references['&'] = "&amp;";
  return references;
}

constexpr References kReferences = MakeReferences();

std::string_view ReferenceOf(char c) { return kReferences[static_cast<unsigned char>(c)]; }

/// Bits of the characters among 16 that are markup.
unsigned MarkupIn(char const* bytes) {
  __m128i const text = _mm_loadu_si128(reinterpret_cast<__m128i const*>(bytes));
  __m128i const angles =
      _mm_cmpeq_epi8(_mm_or_si128(text, _mm_set1_epi8('<' ^ '>')), _mm_set1_epi8('>'));
  __m128i const others =
      _mm_cmpeq_epi8(_mm_or_si128(text, _mm_set1_epi8('"' ^ '&')), _mm_set1_epi8('&'));
  __m128i const apostrophe = _mm_cmpeq_epi8(text, _mm_set1_epi8('\''));
  return static_cast<unsigned>(
      _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(angles, others), apostrophe)));
}

/// Place of the first markup character at or behind `from`; the size of the text for none.
std::size_t FindMarkup(std::string_view text, std::size_t from) {
  for (; text.size() - from >= 16; from += 16) {
    if (unsigned const found = MarkupIn(text.data() + from); found != 0) {
      return from + static_cast<std::size_t>(__builtin_ctz(found));
    }
  }
  while (from < text.size() && ReferenceOf(text[from]).empty()) ++from;
  return from;
}

}  // namespace

TextOut& TextOut::PutEscaped(std::string_view text, char keep) {
  std::size_t done = 0;
  for (std::size_t i = FindMarkup(text, 0); i < text.size(); i = FindMarkup(text, i + 1)) {
    if (text[i] == keep) continue;
    Put(text.substr(done, i - done)).Put(ReferenceOf(text[i]));
    done = i + 1;
  }
  return Put(text.substr(done));
}

TextOut& TextOut::PutLong(std::string_view piece) {
  Flush();
  if (piece.size() > sizeof m_buffer) {
    m_text.append(piece);
  } else {
    Put(piece);
  }
  return *this;
}

}  // namespace lumo
