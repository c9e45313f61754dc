#include "cli/Cells.h"

#include <nlohmann/json.hpp>

#include <algorithm>

#include "cli/Failure.h"
#include "cli/Json.h"
#include "cli/Output.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"

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

double NumberFrom(std::string const& text) {
  double number = 0;
  if (!lumo::ReadNumber(text, number)) Refuse(lumo::Quoted(text) + " is not a number");
  return number;
}

lumo::Value FigureFrom(std::string text, bool isRange, std::string const& columnUnit) {
  bool const isEstimated = !text.empty() && text[0] == '~';
  if (isEstimated) text.erase(0, 1);
  std::size_t const blank = text.find(' ');
  std::string const unit = blank == std::string::npos
                               ? columnUnit
                               : std::string(lumo::Trimmed(std::string_view(text).substr(blank)));
  text.resize(std::min(blank, text.size()));
  if (!isRange) return lumo::Quantity{NumberFrom(text), unit, isEstimated};
  std::size_t const joint = text.find(kEllipsis);
  lumo::Range range{{}, {}, unit, isEstimated};
  std::string const low = text.substr(0, joint);
  std::string const high = joint == std::string::npos ? low : text.substr(joint + 2);
  if (!low.empty()) range.low = NumberFrom(low);
  if (!high.empty()) range.high = NumberFrom(high);
  return range;
}

std::vector<std::string> WordsFrom(std::string const& text) {
  std::vector<std::string> words;
  for (std::size_t at = 0; at <= text.size();) {
    std::size_t const end = std::min(text.find(';', at), text.size());
    words.emplace_back(lumo::Trimmed(text.substr(at, end - at)));
    at = end + 1;
  }
  return words;
}

}  // namespace

std::string CsvCell(lumo::Value const& value, std::string const& columnUnit) {
  std::string const text = std::visit(CsvMaker{columnUnit}, value);
  return text.empty() ? CellText(JsonOf(value)) : text;
}

lumo::Value FromCsvCell(std::string const& cell, lumo::Attribute const& attribute,
                        std::string const& columnUnit) {
  if (cell.empty()) return {};
  switch (attribute.type) {
    case AttributeType::Text:
    case AttributeType::LongText: return cell;
    case AttributeType::Date: return lumo::DateTime{cell};
    default: break;
  }
  if (LooksLikeJson(cell)) return ValueOf(ParseJson(cell), attribute);
  switch (attribute.type) {
    case AttributeType::Integer: {
      int value = 0;
      if (!lumo::ReadInteger(cell, value)) Refuse(lumo::Quoted(cell) + " is not a whole number");
      return std::int64_t{value};
    }
    case AttributeType::Logical: {
      bool const isYes =
          lumo::EqualIgnoringCase(cell, "yes") || lumo::EqualIgnoringCase(cell, "true");
      bool const isNo =
          lumo::EqualIgnoringCase(cell, "no") || lumo::EqualIgnoringCase(cell, "false");
      if (!isYes && !isNo) Refuse(lumo::Quoted(cell) + " is neither yes nor no");
      return isYes;
    }
    case AttributeType::Discrete: return WordsFrom(cell);
    case AttributeType::Link: return lumo::Link{cell, ""};
    case AttributeType::Number:
    case AttributeType::Range:
      return FigureFrom(cell, attribute.type == AttributeType::Range, columnUnit);
    default: Refuse(lumo::Quoted(cell) + " is not a value of this type");
  }
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
