#pragma once

#include <emmintrin.h>

#include <exception>
#include <string>
#include <string_view>

#include "lumo/platform/core/FetchAhead.h"
#include "lumo/xml/XMLUtilites.h"

namespace lumo {

/// Thrown where XML is not plain. It stays inside the library: the whole tree is read then.
class NotPlain : public std::exception {};

/// Text of an element or an attribute as the bytes have it.
struct RawText {
  std::string_view bytes;
  bool hasReferences;  ///< "&amp;" and the like, see `PlainXml::Decode`
};

/// Takes plain XML apart where it lies: elements, attributes, text, the five entities, character
/// references, comments between elements, and a declaration before all. Whatever RapidXML would
/// refuse or read in a way of its own is not plain, and everything that is plain means the same to
/// RapidXML.
class PlainXml {
 public:
  /// The text must outlive the object.
  explicit PlainXml(std::string const& text)
      : m_at(text.data()), m_end(text.data() + text.size()) {}

  enum class Piece { StartTag, EndTag, Text };

  /// Skips what may stand before the root; its start tag comes next.
  void SkipProlog();
  /// Skips what may stand behind the root, to the end.
  void SkipEpilog();
  /// What comes next in an element; comments, and white space that stands alone, are skipped.
  Piece Next() {
    for (;;) {
      m_start = m_at;
      SkipSpace();
      if (*m_at != '<') return Piece::Text;
      if (m_at[1] == '/') return Piece::EndTag;
      if (m_at[1] != '!') return Piece::StartTag;
      SkipComment();
    }
  }

  /// Whether text comes next, as its first character shows; false where it takes a closer look.
  bool IsAtText() {
    m_start = m_at;
    return *m_at != '<' && !IsSpace(*m_at);
  }
  bool IsAtEndTag() const { return *m_at == '<' && m_at[1] == '/'; }

  /// Name of the start tag that comes next; its attributes follow.
  std::string_view StartTag() {
    FetchAhead(m_at);
    ++m_at;
    std::string_view const name = Name();
    if (!IsSpace(*m_at) && *m_at != '>' && *m_at != '/') throw NotPlain();
    return name;
  }
  /// The next attribute of the start tag; false when there is none left.
  bool Attribute(std::string_view& name, RawText& value) {
    if (*m_at == '>') return false;
    SkipSpace();
    if (*m_at == '>' || *m_at == '/') return false;
    name = Name();
    SkipSpace();
    Take('=');
    SkipSpace();
    char const quote = *m_at;
    if (quote != '"' && quote != '\'') throw NotPlain();
    ++m_at;
    value = Raw(m_at, quote);
    ++m_at;
    return true;
  }
  /// Ends the start tag; true when content and an end tag follow.
  bool EndStartTag() {
    bool const isEmpty = *m_at == '/';
    if (isEmpty) ++m_at;
    Take('>');
    return !isEmpty;
  }
  /// The end tag that comes next, which must have that name.
  void EndTag(std::string_view name) {
    m_at += 2;
    if (static_cast<std::size_t>(m_end - m_at) <= name.size() ||
        !IsSameText(m_at, name.data(), name.size())) {
      throw NotPlain();
    }
    m_at += name.size();
    SkipSpace();
    Take('>');
  }
  /// The text that comes next, up to a tag or a comment.
  RawText Text() { return Raw(m_start, '<'); }

  /// Writes the text with its references replaced, which makes it shorter, and returns the end.
  static char* Decode(std::string_view bytes, char* out);
  /// The character that the reference stands for; `at` moves from "&" to behind ";".
  static char* DecodeReference(char const*& at, char* out);

 private:
  static bool IsSpace(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }
  void SkipSpace() {
    while (IsSpace(*m_at)) ++m_at;
  }
  void Take(char c) {
    if (*m_at != c) throw NotPlain();
    ++m_at;
  }
  void SkipComment();
  /// To behind the next `mark`, without a zero on the way.
  void SkipTo(std::string_view mark);

  /// 16 bytes at a time where `stops(16 bytes)` marks those at which to stop, then one by one.
  template <class Stops, class Stop>
  char const* Find(char const* at, Stops stops, Stop isStop) const {
    for (; m_end - at >= 16; at += 16) {
      __m128i const bytes = _mm_loadu_si128(reinterpret_cast<__m128i const*>(at));
      if (int const mask = _mm_movemask_epi8(stops(bytes)); mask != 0) {
        return at + __builtin_ctz(static_cast<unsigned>(mask));
      }
    }
    while (!isStop(*at)) ++at;
    return at;
  }

  std::string_view Name() {
    char const* const begin = m_at;
    m_at = Find(
        begin,
        [](__m128i bytes) {  // up to the blank, "/", "!", and "<" to "?"
          __m128i const blank = _mm_set1_epi8(' ');
          __m128i const low = _mm_cmpeq_epi8(_mm_max_epu8(bytes, blank), blank);
          __m128i const slash = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('/'));
          __m128i const bang = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('!'));
          __m128i const sign =
              _mm_cmpeq_epi8(_mm_or_si128(bytes, _mm_set1_epi8(3)), _mm_set1_epi8('?'));
          return _mm_or_si128(_mm_or_si128(low, slash), _mm_or_si128(bang, sign));
        },
        [](char c) {
          return static_cast<unsigned char>(c) <= ' ' || c == '/' || c == '!' || (c | 3) == '?';
        });
    if (m_at == begin) throw NotPlain();
    return {begin, static_cast<std::size_t>(m_at - begin)};
  }

  RawText Raw(char const* begin, char stop) {
    bool hasReferences = false;
    for (;;) {
      m_at = Find(
          m_at,
          [stop](__m128i bytes) {
            __m128i const end = _mm_cmpeq_epi8(bytes, _mm_set1_epi8(stop));
            __m128i const reference = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('&'));
            __m128i const zero = _mm_cmpeq_epi8(bytes, _mm_setzero_si128());
            return _mm_or_si128(_mm_or_si128(end, reference), zero);
          },
          [stop](char c) { return c == stop || c == '&' || c == '\0'; });
      if (*m_at == stop) break;
      if (*m_at == '\0') throw NotPlain();
      hasReferences = true;
      ++m_at;
    }
    return {{begin, static_cast<std::size_t>(m_at - begin)}, hasReferences};
  }

  char const* m_at;
  char const* m_end;
  char const* m_start = nullptr;  // of the text that comes next, white space included
};

}  // namespace lumo
