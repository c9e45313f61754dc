#include "cli/SplitColumns.h"

#include <algorithm>
#include <optional>

#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/TypedText.h"

namespace cli {
namespace {

using Sheet = std::vector<std::vector<std::string>>;

/// The heading without that word behind the attribute's name; nothing when it is not there.
std::optional<std::string> Without(std::string const& heading, std::string const& word) {
  std::size_t const bracket = std::min(heading.rfind(" ["), heading.size());
  bool const has =
      bracket > word.size() && heading.compare(bracket - word.size(), word.size(), word) == 0;
  if (!has) return std::nullopt;
  return heading.substr(0, bracket - word.size()) + heading.substr(bracket);
}

bool IsAttribute(std::string const& heading, std::vector<lumo::Attribute> const& attributes) {
  std::string const name = heading.substr(0, heading.rfind(" ["));
  return std::any_of(attributes.begin(), attributes.end(), [&](lumo::Attribute const& one) {
    return lumo::EqualIgnoringCase(one.name, name);
  });
}

/// Whether a figure is estimated; throws `lumo::Error`.
bool IsYes(std::string const& cell) {
  lumo::Attribute mark;
  mark.type = lumo::AttributeType::Logical;
  lumo::Value const is = lumo::ReadTyped({cell}, mark);
  return std::holds_alternative<bool>(is) && std::get<bool>(is);
}

/// Joins each cell of a column with the one behind it, which goes.
template <class Join>
void MergeWithNext(Sheet& sheet, std::size_t column, std::string const& heading, Join join) {
  sheet[0][column] = heading;
  for (std::size_t i = 0; i < sheet.size(); ++i) {
    auto& row = sheet[i];
    if (column + 1 >= row.size()) continue;
    if (i > 0) row[column] = join(row[column], row[column + 1], i + 1);
    row.erase(row.begin() + static_cast<std::ptrdiff_t>(column) + 1);
  }
}

/// The same when the column behind it is called so, with that word behind the attribute's name.
template <class Join>
void MergeWord(Sheet& sheet, std::size_t column, std::string const& word,
               std::vector<lumo::Attribute> const& attributes, Join join) {
  if (column + 1 >= sheet[0].size()) return;
  std::string const heading = sheet[0][column];
  bool const isIt = sheet[0][column + 1] == heading.substr(0, heading.rfind(" [")) + word;
  if (isIt && IsAttribute(heading, attributes)) MergeWithNext(sheet, column, heading, join);
}

}  // namespace

std::vector<lumo::RowFault> MergeSplitColumns(Sheet& sheet,
                                              std::vector<lumo::Attribute> const& attributes) {
  std::vector<lumo::RowFault> faults;
  for (std::size_t i = 0; !sheet.empty() && i + 1 < sheet[0].size(); ++i) {
    auto const low = Without(sheet[0][i], " low");
    if (low && low == Without(sheet[0][i + 1], " high") && IsAttribute(*low, attributes)) {
      MergeWithNext(sheet, i, *low, [](std::string const& a, std::string const& b, std::size_t) {
        return a.empty() && b.empty() ? "" : a == b ? a : a + ".." + b;
      });
    }
    std::string const name = sheet[0][i].substr(0, sheet[0][i].rfind(" ["));
    MergeWord(sheet, i, " estimated", attributes,
              [&](std::string const& a, std::string const& b, std::size_t row) {
                try {
                  return IsYes(b) && !a.empty() ? "~" + a : a;
                } catch (lumo::Error const& error) {
                  faults.push_back(
                      {name + " estimated", "row " + std::to_string(row) + ": " + error.what()});
                  return a;
                }
              });
    MergeWord(
        sheet, i, " points", attributes,
        [](std::string const& a, std::string const& b, std::size_t) { return b.empty() ? a : b; });
  }
  return faults;
}

}  // namespace cli
