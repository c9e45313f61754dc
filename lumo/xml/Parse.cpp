#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>

#include "lumo/xml/XMLUtilites.h"

namespace {

/// RapidXML's default behaviour, and a bit of our own by which the parser below is found.
constexpr int kParseDepthLimited = rapidxml::parse_default | 0x10000;

thread_local char lastError[128] = "";
thread_local bool isOutOfMemory = false;  // why the last text did not parse
thread_local int depth = 0;

/// One element deeper, as long as it lives. RapidXML descends once per nested element: the limit
/// keeps a hostile reply off the end of the stack.
class Descent {
 public:
  explicit Descent(void* where) {
    if (++depth <= lumo::kMaxDepth) return;
    --depth;
    throw rapidxml::parse_error("too many nested elements", where);
  }
  ~Descent() { --depth; }
  Descent(Descent const&) = delete;
  Descent& operator=(Descent const&) = delete;
};

bool Refuse(char const* message, void* where, XmlDocument<char>& document) {
  XmlErrorHandler(message, where);
  document.clear();
  return false;
}

}  // namespace

/// RapidXML's own reading of an element, with the descent counted. Counting where the parser
/// descends is exact whatever the text looks like, and costs no second walk over the bytes.
template <>
template <>
XmlNode<char>* rapidxml::xml_document<char>::parse_element<kParseDepthLimited>(char*& text) {
  Descent const descent(text);
  XmlNode<char>* const element = allocate_node(node_element);
  char* const name = text;
  skip<node_name_pred, kParseDepthLimited>(text);
  if (text == name) throw parse_error("expected element name", text);
  element->name(name, static_cast<std::size_t>(text - name));
  skip<whitespace_pred, kParseDepthLimited>(text);
  parse_node_attributes<kParseDepthLimited>(text, element);
  if (*text == '>') {
    ++text;
    parse_node_contents<kParseDepthLimited>(text, element);
  } else if (text[0] == '/' && text[1] == '>') {
    text += 2;
  } else {
    throw parse_error("expected >", text);
  }
  element->name()[element->name_size()] = '\0';
  return element;
}

/// RapidXML drops white space that fills the room between two pieces of markup. Between two CDATA
/// sections of an element it is text, and becomes the beginning of the second one.
template <>
template <>
XmlNode<char>* rapidxml::xml_document<char>::parse_cdata<kParseDepthLimited>(char*& text) {
  char const* const mark = text - std::strlen("<![CDATA[");
  char const* space = mark;
  while (depth > 0 && whitespace_pred::test(space[-1])) --space;
  XmlNode<char>* const section = parse_cdata<rapidxml::parse_default>(text);
  // Of the "]]>" that ended the section before, the parser has overwritten the first character.
  if (space != mark && std::memcmp(space - 3, "\0]>", 3) == 0) {
    auto const size = static_cast<std::size_t>(mark - space);
    char* const begin = section->value() - size;
    std::memmove(begin, space, size);
    section->value(begin, size + section->value_size());
  }
  return section;
}

void XmlErrorHandler(char const* message, void* /*where*/) {
  std::string_view const text = message == nullptr ? std::string_view() : message;
  lastError[text.copy(lastError, sizeof lastError - 1)] = '\0';
}

std::string_view lumo::LastXmlError() { return lastError; }

bool lumo::ParseXml(char const* begin, char const* end, XmlDocument<char>& document) {
  if (XMLUtilites::Parse(begin, end, document)) return true;
  if (isOutOfMemory) throw std::bad_alloc();
  return false;
}

bool XMLUtilites::Parse(char const* begin, char const* end, XmlDocument<char>& document) {
  document.clear();
  isOutOfMemory = false;
  std::size_t const size = begin == nullptr ? 0 : static_cast<std::size_t>(end - begin);
  try {
    char* const text = document.allocate_string(nullptr, size + 1);
    if (size != 0) std::memcpy(text, begin, size);
    text[size] = '\0';
    if (void* const zero = std::memchr(text, '\0', size); zero != nullptr) {
      return Refuse("zero byte in the text", zero, document);
    }
    document.parse<kParseDepthLimited>(text);
  } catch (rapidxml::parse_error const& error) {
    return Refuse(error.what(), error.where<char>(), document);
  } catch (std::bad_alloc const&) {
    isOutOfMemory = true;
    return Refuse("out of memory", nullptr, document);
  }
  return true;
}
