#include "lumo/toolkit/TypedText.h"

#include <array>
#include <cmath>
#include <utility>

#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

[[noreturn]] void Refuse(std::string const& why) { throw Error(ErrorCode::InvalidArgument, why); }

/// Signs that sheets and word processors put in the place of those on a keyboard.
std::string WithPlainSigns(std::string_view text) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 8> kSigns = {{
      {"\xC2\xA0", " "},       // no-break space
      {"\xE2\x80\xAF", " "},   // narrow no-break space
      {"\xE2\x80\x93", "-"},   // en dash
      {"\xE2\x80\x94", "-"},   // em dash
      {"\xE2\x88\x92", "-"},   // minus
      {"\xE2\x80\xA6", ".."},  // ellipsis
      {"\xE2\x89\xA5", ">"},
      {"\xE2\x89\xA4", "<"},
  }};
  std::string plain(text);
  for (auto const& [sign, instead] : kSigns) {
    for (std::size_t at = 0; (at = plain.find(sign, at)) != std::string::npos;) {
      plain.replace(at, sign.size(), instead);
    }
  }
  return plain;
}

bool Skip(std::string_view& text, std::string_view what) {
  if (!StartsIgnoringCase(text, what)) return false;
  text = Trimmed(text.substr(what.size()));
  return true;
}

/// Reads figures off a text.
class FigureReader {
 public:
  FigureReader(TypedText const& typed, std::string const& unit)
      : m_typed(typed),
        m_plain(WithPlainSigns(typed.text)),
        m_rest(Trimmed(m_plain)),
        m_unit(typed.unit.empty() ? unit : typed.unit) {}

  Range Read() {
    Range range;
    range.estimated = Skip(m_rest, "~") || Skip(m_rest, "ca.") || Skip(m_rest, "approx.");
    if (Skip(m_rest, ">=") || Skip(m_rest, ">")) {
      range.low = Number();
    } else if (Skip(m_rest, "<=") || Skip(m_rest, "<") || Skip(m_rest, "..")) {
      range.high = Number();
    } else {
      range.low = Number();
      range.high = range.low;
      if (Skip(m_rest, "..")) {
        range.high = IsNumberNext(m_rest) ? std::optional<double>(Number()) : std::nullopt;
      } else if (IsJoint() && (Skip(m_rest, "to ") || Skip(m_rest, "-"))) {
        range.high = Number();
      }
    }
    range.unit = m_rest.empty() ? m_unit : std::string(m_rest);
    return range;
  }

 private:
  [[noreturn]] void RefuseText(std::string const& advice = "") const {
    Refuse(Quoted(m_typed.text) + " is not a number" + advice);
  }

  [[noreturn]] void RefuseThousands() const {
    std::string const form = m_typed.hasDecimalComma ? "1234,5" : "1234.5";
    RefuseText(": write " + form + ", without signs between thousands");
  }

  /// Refuses a figure that may mean two numbers, and puts a point in the place of a decimal comma.
  void CheckSigns() {
    std::size_t const begin = m_rest.find_first_not_of("+-");
    std::size_t const at = m_rest.find_first_not_of("0123456789.,", std::min(begin, m_rest.size()));
    std::string_view figure = m_rest.substr(0, at);
    figure = figure.substr(0, figure.find(".."));
    if (begin == std::string_view::npos || begin >= figure.size()) return;
    std::size_t const sign = figure.find_first_of(".,");
    if (sign == std::string_view::npos) return;
    if (figure.find_first_of(".,", sign + 1) != std::string_view::npos) RefuseThousands();
    char const decimal = m_typed.hasDecimalComma ? ',' : '.';
    std::string const whole(figure.substr(begin, sign - begin));
    std::string const group(figure.substr(sign + 1));
    bool const mayBeThousands = figure[sign] != decimal && IsGroup(group) && !whole.empty() &&
                                whole.size() <= 3 && whole[0] != '0';
    if (mayBeThousands) {
      Refuse(Quoted(m_typed.text) + " may mean two numbers: write " + whole + decimal + group +
             " or " + whole + group);
    }
    if (m_typed.hasDecimalComma) m_plain[OffsetOf(m_rest) + sign] = '.';
  }
  std::size_t OffsetOf(std::string_view part) const {
    return static_cast<std::size_t>(part.data() - m_plain.data());
  }
  static bool IsDigit(char c) { return c >= '0' && c <= '9'; }
  static bool IsGroup(std::string_view text) {
    return text.size() >= 3 && IsDigit(text[0]) && IsDigit(text[1]) && IsDigit(text[2]) &&
           (text.size() == 3 || !IsDigit(text[3]));
  }
  bool IsNumberNext(std::string_view text) const {
    if (m_typed.hasDecimalComma && !text.empty() && text[0] == ',') text.remove_prefix(1);
    double number = 0;
    std::string_view rest;
    return ReadNumber(text, number, rest);
  }
  /// Whether a word or a dash is followed by a number: in "5 to" and "5 -m" none is.
  bool IsJoint() const {
    std::string_view rest = m_rest;
    return (Skip(rest, "to ") || Skip(rest, "-")) && IsNumberNext(rest);
  }

  double Number() {
    CheckSigns();
    // "2..3" is not "2." and ".3".
    std::string_view const whole = m_rest;
    std::size_t const dots = whole.find("..");
    std::string_view const part = whole.substr(0, dots);
    double number = 0;
    std::string_view rest;
    if (!ReadNumber(part, number, rest)) {
      RefuseText(std::isfinite(number) ? "" : " that can be sent");
    }
    std::size_t const used = part.size() - rest.size();
    bool const hasComma = !rest.empty() && rest.front() == ',';
    if (hasComma) RefuseText(": write it with a point");
    m_rest = Trimmed(whole.substr(used));
    if (IsGroup(m_rest)) RefuseThousands();  // "1 000"
    return number;
  }

  TypedText const& m_typed;
  std::string m_plain;
  std::string_view m_rest;
  std::string m_unit;
};

Value FigureOf(TypedText const& typed, Attribute const& attribute) {
  Range range = FigureReader(typed, attribute.unit).Read();
  if (attribute.type == AttributeType::Range) return range;
  if (!range.low || range.low != range.high) {
    Refuse("takes one number, and " + Quoted(typed.text) + " is a range");
  }
  return Quantity{*range.low, range.unit, range.estimated};
}

Value IntegerOf(TypedText const& typed) {
  Range const range = FigureReader(typed, "").Read();
  bool const isWhole = range.low && range.low == range.high && range.unit.empty() &&
                       *range.low == std::floor(*range.low) && std::fabs(*range.low) < 1e15;
  if (!isWhole) Refuse(Quoted(typed.text) + " is not a whole number");
  return static_cast<std::int64_t>(*range.low);
}

Value LogicalOf(std::string_view text) {
  for (std::string_view const yes : {"yes", "true", "1"}) {
    if (EqualIgnoringCase(text, yes)) return true;
  }
  for (std::string_view const no : {"no", "false", "0"}) {
    if (EqualIgnoringCase(text, no)) return false;
  }
  Refuse(Quoted(text) + " is neither yes nor no");
}

std::vector<std::string> WordsOf(std::string_view text) {
  std::vector<std::string> words;
  for (std::size_t at = 0; at <= text.size();) {
    std::size_t const end = std::min(text.find(';', at), text.size());
    std::string_view const word = Trimmed(text.substr(at, end - at));
    if (!word.empty()) words.emplace_back(word);
    at = end + 1;
  }
  if (words.empty()) Refuse(Quoted(text) + " has no word");
  return words;
}

/// "17.3.2026", "3/17/2026" and the like, as the days that they may mean in ISO form.
std::vector<std::string> DaysMeant(std::string_view text) {
  std::array<int, 3> parts{};
  for (std::size_t i = 0; i < parts.size(); ++i) {
    std::size_t const end = i == 2 ? text.size() : text.find_first_of("./-", 0);
    if (end == std::string_view::npos) return {};
    if (!ReadInteger(text.substr(0, end), parts.at(i)) || parts.at(i) < 0) return {};
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  std::vector<std::string> days;
  auto const add = [&](int year, int month, int day) {
    char form[40];
    std::snprintf(form, sizeof form, "%04d-%02d-%02d", year < 100 ? year + 2000 : year, month, day);
    bool const isNew = days.empty() || days[0] != form;
    if (isNew && DateTime{form}.Microseconds()) days.emplace_back(form);
  };
  if (parts[0] > 31) {
    add(parts[0], parts[1], parts[2]);
  } else {
    add(parts[2], parts[1], parts[0]);
    add(parts[2], parts[0], parts[1]);
  }
  return days;
}

Value DateOf(std::string_view text) {
  DateTime date{std::string(text)};
  if (date.Microseconds()) return date;
  std::vector<std::string> const days = DaysMeant(text);
  std::string form = days.empty() ? "such as 2026-03-17" : days[0];
  if (days.size() == 2) form += " or " + days[1];
  Refuse(Quoted(text) + " is not a date in ISO form: write " + form);
}

}  // namespace

Value ReadTyped(TypedText const& typed, Attribute const& attribute) {
  std::string_view const text = Trimmed(typed.text);
  if (text.empty()) return {};
  switch (attribute.type) {
    case AttributeType::Text:
    case AttributeType::LongText: return typed.text;
    case AttributeType::Integer: return IntegerOf(typed);
    case AttributeType::Logical: return LogicalOf(text);
    case AttributeType::Date: return DateOf(text);
    case AttributeType::Discrete: return WordsOf(text);
    case AttributeType::Number:
    case AttributeType::Range: return FigureOf(typed, attribute);
    case AttributeType::Link: return Link{std::string(text), ""};
    default: break;
  }
  Refuse("holds a " + std::string(NameOf(attribute.type)) + ", which cannot be typed as " +
         Quoted(text));
}

Attribute const& NamedAttribute(std::vector<Attribute> const& attributes, std::string const& name) {
  for (Attribute const& attribute : attributes) {
    if (attribute.name == name) return attribute;
  }
  std::vector<std::string> names;
  for (Attribute const& attribute : attributes) {
    if (EqualIgnoringCase(attribute.name, name)) return attribute;
    names.push_back(attribute.name);
  }
  ThrowNotFound("attribute", name, names);
}

Heading ReadHeading(std::string_view text, std::vector<Attribute> const& attributes) {
  std::string const heading(Trimmed(text));
  for (Attribute const& attribute : attributes) {
    if (EqualIgnoringCase(attribute.name, heading)) return {&attribute, ""};
  }
  for (auto const& [open, close] : {std::pair('[', ']'), std::pair('(', ')')}) {
    std::size_t const begin = heading.rfind(open);
    if (heading.empty() || heading.back() != close || begin == std::string::npos) continue;
    std::string_view const unit =
        Trimmed(std::string_view(heading).substr(begin + 1, heading.size() - begin - 2));
    std::string const name(Trimmed(heading.substr(0, begin)));
    return {&NamedAttribute(attributes, name), std::string(unit)};
  }
  return {&NamedAttribute(attributes, heading), ""};
}

std::string WhyOf(Error const& error, std::string const& attribute) {
  std::string why = error.what();
  std::string const beginning = "the attribute " + Quoted(attribute) + " ";
  if (why.compare(0, beginning.size(), beginning) == 0) why.erase(0, beginning.size());
  Hint const& hint = error.Hint();
  if (hint.code == HintCode::DidYouMean && !hint.arguments.empty()) {
    why += "; did you mean " + Quoted(hint.arguments.front()) + "?";
  }
  return why;
}

}  // namespace lumo
