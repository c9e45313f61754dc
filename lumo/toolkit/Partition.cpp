#include "lumo/toolkit/Partition.h"

#include <charconv>
#include <string_view>

#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Numbers.h"

namespace lumo {
namespace {

constexpr std::string_view kKind = "lumo/1";
constexpr std::size_t kMostRecords = 10'000'000;  // no typing slip takes all memory
constexpr char const* kHexadecimal = "0123456789ABCDEF";

bool IsPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
         c == '_' || c == '/' || c == ':' || c == '~' || c == '[' || c == ']';
}

std::string Encoded(std::string_view text) {
  std::string encoded;
  for (char const c : text) {
    auto const byte = static_cast<unsigned char>(c);
    if (IsPlain(c)) {
      encoded += c;
    } else {
      encoded += {'%', kHexadecimal[byte >> 4U], kHexadecimal[byte & 15U]};
    }
  }
  return encoded;
}

[[noreturn]] void Refuse(std::string const& why) {
  throw Error(ErrorCode::InvalidArgument, "not a part of a selection: " + why);
}

std::string Decoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      decoded += text[i];
      continue;
    }
    unsigned byte = 0;
    char const* const end = text.data() + i + 3;
    if (i + 2 >= text.size() || std::from_chars(text.data() + i + 1, end, byte, 16).ptr != end) {
      Refuse("a \"%\" without two digits");
    }
    decoded += static_cast<char>(byte);
    i += 2;
  }
  return decoded;
}

/// The next part of the text up to a separator, which are both taken off.
std::string_view TakePart(std::string_view& text, char separator) {
  std::size_t const end = text.find(separator);
  std::string_view const part = text.substr(0, end);
  text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  return part;
}

/// "12", "12-40", or a GUID with "=" before it.
void AddRecords(std::vector<RecordId>& records, std::string const& database,
                std::string_view text) {
  if (!text.empty() && text.front() == '=') {
    records.push_back({database, 0, std::string(text.substr(1))});
    return;
  }
  std::string_view rest = text;
  int first = 0;
  int last = 0;
  bool const hasFirst = ReadInteger(TakePart(rest, '-'), first);
  if (rest.empty()) last = first;
  if (!hasFirst || (!rest.empty() && !ReadInteger(rest, last)) || first <= 0 || last < first) {
    Refuse("\"" + std::string(text) + "\" names no records");
  }
  std::size_t const count = static_cast<std::size_t>(last - first) + 1;
  if (records.size() + count > kMostRecords) Refuse("it has too many records");
  for (std::size_t i = 0; i < count; ++i) {
    records.push_back({database, first + static_cast<int>(i), ""});
  }
}

}  // namespace

std::string Partition::ToText() const {
  std::string text = std::string(kKind) + " " + Encoded(server) + " " + Encoded(database) + " " +
                     Encoded(table) + " ";
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    text += (i == 0 ? "" : ",") + Encoded(attributes[i]);
  }
  char separator = ' ';
  for (std::size_t i = 0; i < records.size();) {
    std::size_t end = i + 1;
    int const first = records[i].identity;
    while (end < records.size() && first != 0 &&
           records[end].identity == first + static_cast<int>(end - i)) {
      ++end;
    }
    text += separator;
    text += first == 0 ? "=" + records[i].guid : std::to_string(first);
    if (end - i > 1) text += "-" + std::to_string(records[end - 1].identity);
    separator = ',';
    i = end;
  }
  return text;
}

Partition Partition::FromText(std::string const& text) {
  std::string_view rest = text;
  while (!rest.empty() && (rest.back() == '\n' || rest.back() == '\r')) rest.remove_suffix(1);
  if (TakePart(rest, ' ') != kKind) Refuse("it does not begin with " + std::string(kKind));
  Partition partition;
  partition.server = Decoded(TakePart(rest, ' '));
  partition.database = Decoded(TakePart(rest, ' '));
  partition.table = Decoded(TakePart(rest, ' '));
  for (std::string_view names = TakePart(rest, ' '); !names.empty();) {
    partition.attributes.push_back(Decoded(TakePart(names, ',')));
  }
  while (!rest.empty()) AddRecords(partition.records, partition.database, TakePart(rest, ','));
  bool const isWhole =
      !partition.server.empty() && !partition.table.empty() && !partition.records.empty();
  if (!isWhole) Refuse("it names no server, table or records");
  return partition;
}

}  // namespace lumo
