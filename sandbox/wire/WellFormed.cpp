#include "sandbox/wire/WellFormed.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "sandbox/Fault.h"

namespace sandbox {
namespace {

constexpr std::size_t kMaxDepth = 256;
constexpr std::size_t kMaxLegibleBytes = 1000;
constexpr std::size_t kMaxReferenceBytes = 12;
constexpr auto kNowhere = std::string_view::npos;

bool IsXmlCharacter(unsigned long code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code <= 0xD7FF || (code >= 0xE000 && code <= 0xFFFD) ||
         (code >= 0x10000 && code <= 0x10FFFF);
}

/// Length of the character at the start of the text, 0 when it is not UTF-8 or not for XML.
std::size_t CharacterLength(std::string_view text) {
  unsigned const lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return IsXmlCharacter(lead) ? 1 : 0;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  std::size_t const length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (text.size() < length) return 0;
  unsigned long code = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    unsigned const next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0U) != 0x80) return 0;
    code = code << 6U | (next & 0x3FU);
  }
  bool const isOverlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  return !isOverlong && IsXmlCharacter(code) ? length : 0;
}

void CheckCharacters(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    std::size_t const length = CharacterLength(text.substr(at));
    if (length == 0) {
      throw Fault("byte " + std::to_string(at) +
                  " of the request is not UTF-8 or no character that XML allows");
    }
    at += length;
  }
}

/// `name` stands between "&" and ";".
bool IsReference(std::string_view name) {
  constexpr std::string_view kEntities[] = {"amp", "lt", "gt", "quot", "apos"};
  if (name.substr(0, 1) != "#") {
    return std::find(std::begin(kEntities), std::end(kEntities), name) != std::end(kEntities);
  }
  bool const isHex = name.substr(0, 2) == "#x";
  name.remove_prefix(isHex ? 2 : 1);
  unsigned long code = 0;
  char const* const end = name.data() + name.size();
  auto const [stop, error] = std::from_chars(name.data(), end, code, isHex ? 16 : 10);
  return error == std::errc() && stop == end && IsXmlCharacter(code);
}

void CheckReferences(std::string_view text) {
  for (std::size_t at = text.find('&'); at != kNowhere; at = text.find('&', at + 1)) {
    std::string_view const start = text.substr(at + 1, kMaxReferenceBytes);
    std::size_t const end = start.find(';');
    if (end == kNowhere || !IsReference(start.substr(0, end))) {
      throw Fault("\"&" + std::string(start) +
                  "\" is not a reference; a bare \"&\" must be sent as \"&amp;\"");
    }
  }
}

/// Index of the ">" that ends the tag which starts at `at`.
std::size_t EndOfTag(std::string_view text, std::size_t at) {
  while ((at = text.find_first_of("\"'>", at)) != kNowhere && text[at] != '>') {
    at = text.find(text[at], at + 1);  // the other quote
    if (at == kNowhere) break;
    ++at;
  }
  if (at == kNowhere) throw Fault("the request is not XML: a tag does not end");
  return at;
}

void CheckTags(std::string_view text) {
  std::size_t depth = 0;
  for (std::size_t at = text.find('<'); at != kNowhere; at = text.find('<', at)) {
    char const kind = at + 1 == text.size() ? ' ' : text[at + 1];
    if (kind == '!' || kind == '?') {
      throw Fault(
          "a request holds elements and text only, no comment, CDATA section, processing "
          "instruction or document type");
    }
    at = EndOfTag(text, at);
    if (kind == '/') {
      if (depth != 0) --depth;  // the parser finds the tag that was never opened
    } else if (text[at - 1] != '/') {
      ++depth;
    }
    if (depth > kMaxDepth) {
      throw Fault("the elements are nested deeper than " + std::to_string(kMaxDepth));
    }
  }
}

}  // namespace

void CheckWellFormed(std::string_view request) {
  if (request.substr(0, 6) != "<?xml ") {
    throw Fault("the XML declaration is missing at the start of the request");
  }
  CheckCharacters(request);
  std::size_t const end = request.find("?>");
  if (end == kNowhere) throw Fault("the XML declaration does not end");
  request.remove_prefix(end + 2);
  CheckReferences(request);
  CheckTags(request);
}

std::string Legible(std::string_view text) {
  std::string legible;
  while (!text.empty() && legible.size() < kMaxLegibleBytes) {
    std::size_t const length = CharacterLength(text);
    legible += length == 0 ? "?" : text.substr(0, length);
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  if (!text.empty()) legible += "...";
  return legible;
}

}  // namespace sandbox
