#include <cstddef>
#include <cstring>

#include <array>

#include "lumo/xml/XMLUtilites.h"

namespace {

/// RapidXML descends once per nested element: the limit keeps a hostile reply off the end of the
/// stack.
constexpr int kMaxDepth = 512;

thread_local char const* lastError = "";

struct ScanError {
  char const* message = nullptr;
  char const* where = nullptr;
};

constexpr std::array<bool, 256> MakeNameEnds() {
  std::array<bool, 256> ends{};
  for (char c : std::string_view("\0 \t\n\r/>?='\"<", 12)) {
    ends[static_cast<unsigned char>(c)] = true;
  }
  return ends;
}

constexpr auto kNameEnds = MakeNameEnds();

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool StartsWith(char const* text, std::string_view start) {
  return std::strncmp(text, start.data(), start.size()) == 0;
}

/// Behind the next `mark`, or at the end of the text.
char const* Behind(char const* text, std::string_view mark) {
  char const* const found = std::strstr(text, mark.data());
  return found == nullptr ? text + std::strlen(text) : found + mark.size();
}

/// Behind a DOCTYPE, as RapidXML ends it: at the first ">" outside of "[...]".
char const* BehindDoctype(char const* text) {
  int depth = 0;
  for (; *text != '\0' && (depth > 0 || *text != '>'); ++text) {
    if (*text == '[') ++depth;
    if (*text == ']' && depth > 0) --depth;
  }
  return *text == '\0' ? text : text + 1;
}

/// Behind something that begins with "<!"; `text` stands at the "!".
char const* BehindDeclaration(char const* text) {
  if (StartsWith(text, "!--")) return Behind(text + 3, "-->");
  if (StartsWith(text, "![CDATA[")) return Behind(text + 8, "]]>");
  if (StartsWith(text, "!DOCTYPE") && IsSpace(text[8])) return BehindDoctype(text + 9);
  return Behind(text + 1, ">");
}

bool FollowsEquals(char const* quote) {
  do {
    --quote;
  } while (IsSpace(*quote));
  return *quote == '=';
}

/// At the ">" that ends a start tag, with quoted values skipped; null where the tag is malformed in
/// a way that RapidXML finds by itself. `text` stands behind the element's name.
char const* EndOfStartTag(char const* text, ScanError& error) {
  for (;; ++text) {
    char const c = *text;
    if (c == '>') return text;
    if (c == '\0' || c == '<') return nullptr;
    if (c != '"' && c != '\'') continue;
    if (!FollowsEquals(text)) {
      error = {"expected =", text};
      return nullptr;
    }
    text = std::strchr(text + 1, c);
    if (text == nullptr) return nullptr;
  }
}

/// Counts nested elements exactly as RapidXML will descend. Stops without an error where RapidXML
/// itself will stop; refuses quotes, "=" and "<" in names, which RapidXML lets pass and which could
/// hide elements from the count.
ScanError CheckDepth(char const* text) {
  ScanError error;
  int depth = 0;
  while ((text = std::strchr(text, '<')) != nullptr) {
    ++text;
    if (*text == '!') {
      text = BehindDeclaration(text);
    } else if (*text == '?') {
      text = Behind(text + 1, "?>");
    } else if (*text == '/') {
      if (--depth < 0) break;
      while (*text != '>' && *text != '<' && *text != '\0') ++text;
      if (*text == '<') return {"expected >", text};
    } else {
      while (!kNameEnds[static_cast<unsigned char>(*text)]) ++text;
      if (*text == '=' || *text == '\'' || *text == '"' || *text == '<') {
        return {"expected >", text};
      }
      text = EndOfStartTag(text, error);
      if (text == nullptr) return error;
      if (text[-1] != '/' && ++depth > kMaxDepth) return {"too many nested elements", text};
    }
  }
  return error;
}

bool Refuse(char const* message, void* where, XmlDocument<char>& document) {
  XmlErrorHandler(message, where);
  document.clear();
  return false;
}

}  // namespace

void XmlErrorHandler(char const* message, void* /*where*/) { lastError = message; }

std::string_view lumo::LastXmlError() { return lastError; }

bool XMLUtilites::Parse(char const* begin, char const* end, XmlDocument<char>& document) {
  document.clear();
  std::size_t const size = begin == nullptr ? 0 : static_cast<std::size_t>(end - begin);
  char* const text = document.allocate_string(nullptr, size + 1);
  if (size != 0) std::memcpy(text, begin, size);
  text[size] = '\0';
  if (void* const zero = std::memchr(text, '\0', size); zero != nullptr) {
    return Refuse("zero byte in the text", zero, document);
  }
  if (ScanError const error = CheckDepth(text); error.message != nullptr) {
    return Refuse(error.message, const_cast<char*>(error.where), document);
  }
  try {
    document.parse<rapidxml::parse_default>(text);
  } catch (rapidxml::parse_error const& error) {
    return Refuse(error.what(), error.where<char>(), document);
  }
  return true;
}
