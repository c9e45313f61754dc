#include "cli/ImportInput.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <boost/locale/encoding_utf.hpp>
#include <cerrno>
#include <cstring>
#include <utility>

#include "cli/Cells.h"
#include "cli/Csv.h"
#include "cli/Failure.h"
#include "cli/ImportJson.h"
#include "cli/SplitColumns.h"
#include "cli/Xlsx.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

constexpr int kPollMs = 100;

/// All of a file. Ctrl-C ends the wait for a writer that says nothing.
std::string ContentOf(std::string const& file) {
  auto const fail = [&file](int error) {
    StopWhenInterrupted();
    Refuse("cannot read " + file + ": " + std::strerror(error));
  };
  int const in = file == "-" ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (in < 0) fail(errno);
  std::string text;
  char bytes[65536];
  ssize_t got = 1;
  while (got != 0) {
    StopWhenInterrupted();
    pollfd ready{in, POLLIN, 0};
    if (poll(&ready, 1, kPollMs) <= 0) continue;
    got = read(in, bytes, sizeof bytes);
    if (got < 0 && errno != EINTR) fail(errno);
    if (got > 0) text.append(bytes, static_cast<std::size_t>(got));
  }
  if (in != STDIN_FILENO) close(in);
  return text;
}

bool LooksLikeJson(std::string const& text) {
  std::size_t const begin = text.find_first_not_of(" \t\r\n");
  return begin != std::string::npos && (text[begin] == '[' || text[begin] == '{');
}

}  // namespace

std::string Utf8Of(std::string const& bytes) {
  constexpr char kMark[] = "\xEF\xBB\xBF";
  if (bytes.compare(0, 3, kMark) == 0) return bytes.substr(3);
  bool const isLittle = bytes.compare(0, 2, "\xFF\xFE") == 0;
  if (!isLittle && bytes.compare(0, 2, "\xFE\xFF") != 0) return bytes;
  std::u16string text;  // without the mark
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
    auto const first = static_cast<unsigned char>(bytes[i]);
    auto const second = static_cast<unsigned char>(bytes[i + 1]);
    text += static_cast<char16_t>(isLittle ? first | second << 8 : second | first << 8);
  }
  try {
    if (bytes.size() % 2 != 0) Refuse("the file ends in the middle of a UTF-16 character");
    return boost::locale::conv::utf_to_utf<char>(text, boost::locale::conv::stop);
  } catch (boost::locale::conv::conversion_error const&) {
    Refuse("the file begins as UTF-16 and is not");
  }
}

Input ReadInput(InputOptions const& options, lumo::Table const& table, lumo::Import& import) {
  std::string const bytes = ContentOf(options.file);
  Input input;
  lumo::Import::SheetOptions sheet;
  sheet.readCell = [](std::string const& text, lumo::Attribute const& attribute) {
    return FromCsvCell(text, attribute, "");
  };
  if (IsXlsx(bytes)) {
    input.sheet = ReadXlsx(bytes);
  } else {
    std::string const text = Utf8Of(bytes);
    if (LooksLikeJson(text)) {
      AddJson(text, options.clearsNulls, table, import);
      return input;
    }
    input.delimiter = options.delimiter != 0 ? options.delimiter : DelimiterOf(text);
    sheet.hasDecimalComma = input.delimiter == ';';
    ReadCsv(text, input.delimiter, [&](std::vector<std::string> const& cells) {
      StopWhenInterrupted();
      input.sheet.push_back(cells);
    });
  }
  if (input.sheet.empty()) return input;
  std::vector<std::vector<std::string>> merged = input.sheet;
  for (lumo::RowFault& fault : MergeSplitColumns(merged, table.Attributes())) {
    import.AddFault(std::move(fault));
  }
  import.AddSheet(merged.front(), {merged.begin() + 1, merged.end()}, sheet);
  return input;
}

}  // namespace cli
