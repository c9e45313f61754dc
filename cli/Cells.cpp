#include "cli/Cells.h"

#include <nlohmann/json.hpp>

#include <algorithm>

#include "cli/Failure.h"
#include "cli/Json.h"
#include "cli/Output.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/TypedText.h"

namespace cli {
namespace {

using lumo::AttributeType;

constexpr char kEllipsis[] = "..";
constexpr int kReadableDigits = 6;

/// What a cell of CSV would be taken for.
bool LooksLikeJson(std::string const& cell) {
  return !cell.empty() && (cell[0] == '{' || cell[0] == '[');
}

/// "low..high", or one number where both are the same. `Text` writes a number.
template <class Text>
std::string RangeText(lumo::Range const& range, char const* joint, char const* open, Text text) {
  auto const end = [&](std::optional<double> const& one) { return one ? text(*one) : open; };
  return range.low && range.low == range.high ? text(*range.low)
                                              : end(range.low) + joint + end(range.high);
}

std::string Figure(std::string text, std::string const& unit, bool estimated,
                   std::string const& columnUnit) {
  if (estimated) text.insert(0, "~");
  return unit == columnUnit || unit.empty() ? text : text + " " + unit;
}

/// Words with "; " between them; empty when a word could not be told apart.
std::string WordsText(std::vector<std::string> const& words) {
  std::string text;
  for (std::string const& word : words) {
    if (word.find(';') != std::string::npos) return "";
    text += (text.empty() ? "" : "; ") + word;
  }
  return LooksLikeJson(text) ? "" : text;
}

struct CsvMaker {
  std::string const& columnUnit;

  std::string operator()(std::string const& text) const { return text; }
  std::string operator()(lumo::DateTime const& date) const { return date.text; }
  std::string operator()(bool is) const { return is ? "yes" : "no"; }
  std::string operator()(std::vector<std::string> const& words) const { return WordsText(words); }
  std::string operator()(lumo::Quantity const& one) const {
    return Figure(lumo::TextOf(one.value), one.unit, one.estimated, columnUnit);
  }
  std::string operator()(lumo::Range const& range) const {
    auto const text = [](double number) { return lumo::TextOf(number); };
    return Figure(RangeText(range, kEllipsis, "", text), range.unit, range.estimated, columnUnit);
  }
  std::string operator()(lumo::Link const& link) const {
    return link.description.empty() && !LooksLikeJson(link.url) ? link.url : "";
  }
  template <class Other>
  std::string operator()(Other const& /*other*/) const {
    return "";
  }
};

struct ReadableMaker {
  std::string const& columnUnit;

  static std::string Short(double number) { return lumo::TextOf(number, kReadableDigits); }
  std::string operator()(std::monostate /*none*/) const { return ""; }
  std::string operator()(lumo::NotApplicable /*none*/) const { return "not applicable"; }
  std::string operator()(lumo::Quantity const& one) const {
    return Figure(Short(one.value), one.unit, one.estimated, columnUnit);
  }
  std::string operator()(lumo::Range const& range) const {
    return Figure(RangeText(range, " to ", "?", Short), range.unit, range.estimated, columnUnit);
  }
  std::string operator()(lumo::Points const& points) const {
    return Count(points.points.size(), "point");
  }
  std::string operator()(lumo::Curves const& curves) const {
    return Count(curves.curves.size(), "curve");
  }
  std::string operator()(std::shared_ptr<lumo::Grid const> const& grid) const {
    return Count(grid->rows.size(), "row");
  }
  std::string operator()(std::shared_ptr<lumo::List const> const& list) const {
    std::vector<std::string> items;
    for (lumo::Value const& item : list->items) items.push_back(ReadableCell(item, columnUnit));
    return lumo::Joined(items);
  }
  std::string operator()(lumo::Link const& link) const { return link.url; }
  std::string operator()(lumo::File const& file) const {
    return file.name.empty() ? file.contentType : file.name;
  }
  template <class Other>
  std::string operator()(Other const& other) const {
    return CsvCell(other, columnUnit);
  }
};

}  // namespace

std::string CsvCell(lumo::Value const& value, std::string const& columnUnit) {
  std::string const text = std::visit(CsvMaker{columnUnit}, value);
  return text.empty() ? CellText(JsonOf(value)) : text;
}

lumo::Value FromCsvCell(std::string const& cell, lumo::Attribute const& attribute,
                        std::string const& columnUnit) {
  bool const isText =
      attribute.type == AttributeType::Text || attribute.type == AttributeType::LongText;
  if (!isText && LooksLikeJson(cell)) return ValueOf(ParseJson(cell), attribute);
  return lumo::ReadTyped({cell, columnUnit, false}, attribute);
}

std::string ReadableCell(lumo::Value const& value, std::string const& columnUnit) {
  return std::visit(ReadableMaker{columnUnit}, value);
}

std::string TextOf(lumo::Parameter const& parameter) {
  auto const* const number = std::get_if<double>(&parameter.value);
  if (number == nullptr) return std::get<std::string>(parameter.value);
  return ReadableMaker::Short(*number) + (parameter.unit.empty() ? "" : " " + parameter.unit);
}

std::string TextOf(std::vector<lumo::Parameter> const& parameters) {
  std::string text;
  for (lumo::Parameter const& one : parameters) {
    text += (text.empty() ? "" : ", ") + one.name + " = " + TextOf(one);
  }
  return OneLine(text);
}

}  // namespace cli
