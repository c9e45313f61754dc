#include "lumo/xml/PlainXml.h"

#include <algorithm>
#include <cstring>

namespace lumo {
namespace {

struct Entity {
  std::string_view name;
  char character;
};

constexpr Entity kEntities[] = {
    {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''},
};

/// UTF-8 as RapidXML writes it, surrogates included.
char* Encode(unsigned code, char* out) {
  int const more = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  constexpr unsigned kLead[] = {0, 0xC0, 0xE0, 0xF0};
  *out++ = static_cast<char>(kLead[more] | code >> (6 * more));
  for (int i = more; i-- > 0;) *out++ = static_cast<char>(0x80 | (code >> (6 * i) & 0x3F));
  return out;
}

unsigned DigitOf(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  c = static_cast<char>(c | 0x20);
  return c >= 'a' && c <= 'f' ? static_cast<unsigned>(c - 'a') + 10 : 99;
}

/// The number between "&#" and ";".
unsigned CodeOf(char const*& at) {
  unsigned const base = *at == 'x' ? 16 : 10;
  if (base == 16) ++at;
  unsigned code = 0;
  for (; *at != ';'; ++at) {
    unsigned const digit = DigitOf(*at);
    if (digit >= base) throw NotPlain();
    code = code * base + digit;
    if (code > 0x10FFFF) throw NotPlain();
  }
  ++at;
  if (code == 0) throw NotPlain();
  return code;
}

}  // namespace

char* PlainXml::DecodeReference(char const*& at, char* out) {
  if (at[1] == '#') {
    at += 2;
    return Encode(CodeOf(at), out);
  }
  for (Entity const& entity : kEntities) {
    if (std::strncmp(at, entity.name.data(), entity.name.size()) != 0) continue;
    at += entity.name.size();
    *out = entity.character;
    return out + 1;
  }
  throw NotPlain();
}

char* PlainXml::Decode(std::string_view bytes, char* out) {
  char const* at = bytes.data();
  char const* const end = at + bytes.size();
  while (at != end) {
    char const* const reference = std::find(at, end, '&');
    out = std::copy(at, reference, out);
    at = reference;
    if (at != end) out = DecodeReference(at, out);
  }
  return out;
}

void PlainXml::SkipTo(std::string_view mark) {
  std::string_view const rest(m_at, static_cast<std::size_t>(m_end - m_at));
  std::size_t const found = rest.find(mark);
  if (found == std::string_view::npos) throw NotPlain();
  if (std::memchr(m_at, '\0', found) != nullptr) throw NotPlain();
  m_at += found + mark.size();
}

void PlainXml::SkipComment() {
  if (std::strncmp(m_at, "<!--", 4) != 0) throw NotPlain();
  m_at += 4;
  SkipTo("-->");
}

void PlainXml::SkipProlog() {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (std::strncmp(m_at, kMark.data(), kMark.size()) == 0) m_at += kMark.size();
  SkipSpace();
  if (std::strncmp(m_at, "<?xml ", 6) == 0) SkipTo("?>");
  if (Next() != Piece::StartTag) throw NotPlain();
}

void PlainXml::SkipEpilog() {
  for (SkipSpace(); *m_at == '<'; SkipSpace()) SkipComment();
  if (m_at != m_end) throw NotPlain();
}

}  // namespace lumo
