// Reads the text of a condition by recursive descent: Or, And, Not and Comparison call each other
// as the grammar in Condition.h says.

#include <algorithm>
#include <cmath>
#include <utility>

#include "lumo/toolkit/ConditionNode.h"
#include "lumo/toolkit/Digits.h"
#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

using Node = Condition::Node;
using NodePtr = std::shared_ptr<Node const>;

constexpr int kDeepest = 100;
constexpr std::size_t kMostCombinations = 100'000;
/// What a conversion by factors of fifteen digits leaves.
constexpr int kExactDigits = 12;
/// Of the units of temperature the one whose figures have ratios.
constexpr char kAbsolute[] = "K";

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
/// How many groups of three digits follow a comma: 2 in "1,234,567". 0 when these cannot be
/// thousands.
std::size_t Thousands(std::string_view number) {
  std::size_t groups = 0;
  while (!number.empty() && IsDigit(number.front())) number.remove_prefix(1);
  while (!number.empty() && number.front() == ',') {
    std::size_t digits = 1;
    while (digits < number.size() && IsDigit(number[digits])) ++digits;
    if (digits != 4) return 0;
    number.remove_prefix(digits);
    ++groups;
  }
  return groups;
}
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool IsPartOfWord(char c) {
  return IsDigit(c) || c == '_' || (Lower(c) >= 'a' && Lower(c) <= 'z') ||
         static_cast<unsigned char>(c) >= 0x80U;
}

bool Has(std::string_view characters, char c) { return characters.find(c) != std::string::npos; }

constexpr char kQuoteTexts[] = "; put a text that holds \"and\" or \"or\" in quotation marks";

bool IsNumeric(AttributeType type) {
  return type == AttributeType::Number || type == AttributeType::Range ||
         type == AttributeType::Integer || type == AttributeType::Curve;
}
bool IsText(AttributeType type) {
  return type == AttributeType::Text || type == AttributeType::LongText;
}

NodePtr Joined(Node::Kind kind, std::vector<NodePtr> parts) {
  if (parts.size() == 1) return std::move(parts[0]);
  auto node = std::make_shared<Node>();
  node->kind = kind;
  node->parts = std::move(parts);
  return node;
}

NodePtr Not(NodePtr part) {
  auto node = std::make_shared<Node>();
  node->kind = Node::Kind::Not;
  node->parts.push_back(std::move(part));
  return node;
}

struct Operator {
  std::string_view text;
  bool isBelow;     ///< holds below the operand
  bool isAbove;     ///< holds above it
  bool isIncluded;  ///< holds at it
};

/// Longer ones stand before those that they begin with.
constexpr Operator kOperators[] = {
    {"<=", true, false, true}, {">=", false, true, true},  {"!=", true, true, false},
    {"<>", true, true, false}, {"==", false, false, true}, {"<", true, false, false},
    {">", false, true, false}, {"=", false, false, true},
};
constexpr std::string_view kWords[] = {"between", "contains", "lacks", "exists", "is missing"};

class Parser {
 public:
  Parser(std::string const& text, std::vector<Attribute> const& attributes, Units const& units,
         Match match)
      : m_text(text), m_attributes(attributes), m_units(units), m_match(match) {
    for (Attribute const& attribute : attributes) m_names.push_back(attribute.name);
  }

  NodePtr Read() {
    NodePtr node = Or();
    if (!IsAtEnd()) Refuse("goes on after its end", m_at);
    return node;
  }

 private:
  // ---- complaints

  std::size_t ColumnOf(std::size_t place) const {
    auto const end = m_text.begin() + static_cast<std::ptrdiff_t>(std::min(place, m_text.size()));
    auto const begins = std::count_if(m_text.begin(), end, [](char c) {
      return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;  // a character of UTF-8
    });
    return static_cast<std::size_t>(begins) + 1;
  }
  [[noreturn]] void Refuse(std::string const& why, std::size_t place, Hint hint = {},
                           ErrorCode code = ErrorCode::InvalidArgument) const {
    throw Error(code,
                "the condition " + Quoted(m_text) + " at column " +
                    std::to_string(ColumnOf(place)) + ": " + why,
                std::move(hint));
  }
  /// Looks a name up, and says where it stands when it is not found.
  std::size_t Find(std::vector<std::string> const& names, std::string const& name,
                   std::string const& what, std::size_t place, std::string const& more = "") const {
    try {
      return FindName(names, name, what);
    } catch (Error const& error) {
      Refuse(error.what() + more, place, error.Hint(), error.Code());
    }
  }

  // ---- tokens

  void SkipBlanks() {
    while (m_at < m_text.size() && IsBlank(m_text[m_at])) ++m_at;
  }
  bool IsAtEnd() {
    SkipBlanks();
    return m_at == m_text.size();
  }
  std::string_view Rest(std::size_t from) const {
    return std::string_view(m_text).substr(std::min(from, m_text.size()));
  }
  bool Takes(char c) {
    SkipBlanks();
    if (m_at == m_text.size() || m_text[m_at] != c) return false;
    ++m_at;
    return true;
  }
  /// Whether a word stands there, alone, one blank for one in it; its size with these blanks.
  std::size_t WordAt(std::size_t place, std::string_view word) const {
    std::size_t at = place;
    for (std::size_t i = 0; i < word.size(); ++i, ++at) {
      if (at == m_text.size() || Lower(m_text[at]) != word[i]) return 0;
      while (IsBlank(word[i]) && at + 1 < m_text.size() && IsBlank(m_text[at + 1])) ++at;
    }
    return at < m_text.size() && IsPartOfWord(m_text[at]) ? 0 : at - place;
  }
  bool TakesWord(std::string_view word) {
    SkipBlanks();
    std::size_t const size = WordAt(m_at, word);
    m_at += size;
    return size != 0;
  }
  /// Whether "and", "or" or what closes stands there, or the text ends.
  bool EndsAt(std::size_t place) const {
    return place >= m_text.size() || m_text[place] == ')' || WordAt(place, "and") != 0 ||
           WordAt(place, "or") != 0;
  }
  /// Whether a comparison may go on there after a name.
  bool GoesOnAt(std::size_t place) const {
    while (place < m_text.size() && IsBlank(m_text[place])) ++place;
    if (EndsAt(place)) return true;
    if (Has("<>=!*/^[", m_text[place])) return true;
    return std::any_of(std::begin(kWords), std::end(kWords),
                       [&](std::string_view word) { return WordAt(place, word) != 0; });
  }

  /// What stands in quotation marks; false when none do. An apostrophe marks as well.
  bool TakesQuoted(std::string& text) {
    SkipBlanks();
    if (m_at == m_text.size()) return false;
    char const mark = m_text[m_at];
    if (mark != '"' && mark != '\'') return false;
    std::size_t const end = m_text.find(mark, m_at + 1);
    if (end == std::string::npos) Refuse("a quotation mark is not closed", m_at);
    text = m_text.substr(m_at + 1, end - m_at - 1);
    m_at = end + 1;
    return true;
  }

  /// The text up to the end of the comparison, or up to that character. Parentheses in it close.
  std::string TakeOperand(char stop = '\0') {
    std::string quoted;
    if (TakesQuoted(quoted)) return quoted;
    std::size_t const begin = m_at;
    int open = 0;
    bool isWordBegin = true;
    for (; m_at < m_text.size(); ++m_at) {
      char const c = m_text[m_at];
      if (open == 0 && (c == stop || (isWordBegin && EndsAt(m_at)) || c == ')')) break;
      if (c == '(') ++open;
      if (c == ')') --open;
      isWordBegin = !IsPartOfWord(c);
    }
    return std::string(Trimmed(std::string_view(m_text).substr(begin, m_at - begin)));
  }

  // ---- the grammar

  NodePtr Or() {
    std::vector<NodePtr> parts = {And()};
    while (TakesWord("or")) parts.push_back(And());
    return Joined(Node::Kind::Or, std::move(parts));
  }

  NodePtr And() {
    std::vector<NodePtr> parts = {Negated()};
    while (TakesWord("and")) parts.push_back(Negated());
    return Joined(Node::Kind::And, std::move(parts));
  }

  NodePtr Negated() {
    if (++m_depth > kDeepest) Refuse("is nested too deeply", m_at);
    NodePtr node;
    bool const isName = KnownNameSize() != 0;  // it may well begin with "not" or a parenthesis
    if (!isName && TakesWord("not")) {
      node = Not(Negated());
    } else if (!isName && Takes('(')) {
      std::size_t const open = m_at - 1;
      node = Or();
      if (!Takes(')')) Refuse("the parenthesis is not closed", open);
    } else {
      node = Compared();
    }
    --m_depth;
    return node;
  }

  /// Size of the longest attribute's name that stands here in full; 0 when none does.
  std::size_t KnownNameSize() {
    SkipBlanks();
    std::size_t longest = 0;
    for (std::string const& name : m_names) {
      bool const isHere = name.size() > longest && StartsIgnoringCase(Rest(m_at), name) &&
                          Rest(m_at).size() >= name.size();
      if (isHere && GoesOnAt(m_at + name.size())) longest = name.size();
    }
    return longest;
  }

  Attribute const& TakeAttribute() {
    SkipBlanks();
    std::size_t const place = m_at;
    std::string name;
    if (std::size_t const size = KnownNameSize()) {
      name = m_text.substr(m_at, size);
      m_at += size;
    } else if (!TakesQuoted(name)) {
      int open = 0;
      bool isWordBegin = false;
      for (; m_at < m_text.size(); ++m_at) {
        char const c = m_text[m_at];
        bool const ends =
            Has("<>=!", c) || (open == 0 && (Has(")*/^[", c) || (isWordBegin && GoesOnAt(m_at))));
        if (ends) break;
        if (c == '(') ++open;
        if (c == ')') --open;
        isWordBegin = !IsPartOfWord(c);
      }
      name = Trimmed(std::string_view(m_text).substr(place, m_at - place));
    }
    if (name.empty()) Refuse("an attribute is missing", place);
    return m_attributes[Find(m_names, name, "attribute", place, m_textHint)];
  }

  NodePtr Compared() {
    SkipBlanks();
    std::size_t const place = m_at;
    std::vector<Factor> factors = {TakeFactor(1)};
    for (;;) {
      if (Takes('*')) {
        factors.push_back(TakeFactor(1));
      } else if (Takes('/')) {
        factors.push_back(TakeFactor(-1));
      } else {
        break;
      }
    }
    if (factors.size() > 1 || factors[0].power != 1) return Product(std::move(factors), place);
    Subject& subject = factors[0].subject;
    if (Takes('[')) TakeColumn(subject);
    return Compare(std::move(subject));
  }

  Factor TakeFactor(double side) {
    Attribute const& attribute = TakeAttribute();
    Factor factor;
    factor.subject = {attribute, "", attribute.type, attribute.unit, attribute.words};
    factor.power = side;
    factor.unit = attribute.unit;
    if (Takes('^')) {
      SkipBlanks();
      std::size_t const place = m_at;
      factor.power = side * TakeNumber();
      if (factor.power == 0) Refuse("a power must not be 0", place);
    }
    return factor;
  }

  void TakeColumn(Subject& subject) {
    std::size_t const place = m_at;
    std::size_t const end = m_text.find(']', m_at);
    if (end == std::string::npos) Refuse("the bracket is not closed", place - 1);
    if (subject.type != AttributeType::Grid) {
      Refuse("the attribute " + Quoted(subject.attribute.name) + " has no columns", place);
    }
    std::vector<std::string> names;
    for (GridColumnInfo const& column : subject.attribute.columns) names.push_back(column.name);
    std::string const name(Trimmed(std::string_view(m_text).substr(place, end - place)));
    GridColumnInfo const& column = subject.attribute.columns[Find(names, name, "column", place)];
    subject.column = column.name;
    subject.type = column.type;
    subject.unit = column.unit;
    subject.words = column.words;
    m_at = end + 1;
  }

  Operator const* TakeOperator() {
    SkipBlanks();
    for (Operator const& one : kOperators) {
      if (Rest(m_at).substr(0, one.text.size()) != one.text) continue;
      m_at += one.text.size();
      return &one;
    }
    return nullptr;
  }

  template <class Test>
  static NodePtr Leaf(Subject subject, Test test) {
    auto node = std::make_shared<Node>();
    node->comparison.subject = std::move(subject);
    node->comparison.test = std::move(test);
    return node;
  }

  NodePtr Compare(Subject subject) {
    SkipBlanks();
    std::size_t const place = m_at;
    if (TakesWord("exists")) return Leaf(std::move(subject), ExistsTest());
    if (TakesWord("is missing")) return Not(Leaf(std::move(subject), ExistsTest()));
    if (TakesWord("contains")) return Contains(std::move(subject), TextTest::Kind::Contains);
    if (TakesWord("lacks")) return Contains(std::move(subject), TextTest::Kind::Lacks);
    if (TakesWord("between")) return Between(std::move(subject), place);
    if (Operator const* const one = TakeOperator()) return CompareWith(std::move(subject), *one);
    if (subject.type == AttributeType::Logical) {
      return Leaf(std::move(subject), LogicalTest{true});
    }
    Refuse("after " + Quoted(subject.attribute.name) +
               " one of <, <=, >, >=, =, !=, between, contains, lacks, exists, is missing is"
               " missing" +
               m_textHint,
           place);
  }

  NodePtr CompareWith(Subject subject, Operator const& one) {
    bool const isEquality = one.isBelow == one.isAbove;  // "=" or "!="
    SkipBlanks();
    std::size_t const place = m_at;
    NodePtr node;
    if (IsNumeric(subject.type)) {
      node = Numbers(std::move(subject), one);
    } else if (subject.type == AttributeType::Date) {
      node = Dates(std::move(subject), one);
    } else if (isEquality) {
      node = Equal(std::move(subject));
    } else {
      Refuse("the attribute " + Quoted(subject.attribute.name) + " (" + NameOf(subject.type) +
                 ") has no order; try =, contains or exists",
             place);
    }
    return isEquality && one.isBelow ? Not(std::move(node)) : node;
  }

  // ---- numbers

  double TakeNumber() {
    SkipBlanks();
    std::size_t const place = m_at;
    double number = 0;
    std::string_view rest;
    bool const isNumber = ReadNumber(Rest(m_at), number, rest);
    std::size_t const end = isNumber ? m_text.size() - rest.size() : m_at;
    std::size_t stop = end;
    while (stop < m_text.size() && !IsBlank(m_text[stop]) && m_text[stop] != ')') ++stop;
    std::string const token = m_text.substr(place, stop - place);
    bool const hasComma = end + 1 < m_text.size() && m_text[end] == ',' && IsDigit(m_text[end + 1]);
    if (isNumber && hasComma) {
      std::string pointed = token;
      std::replace(pointed.begin(), pointed.end(), ',', '.');
      std::string plain = token;
      plain.erase(std::remove(plain.begin(), plain.end(), ','), plain.end());
      std::size_t const groups = Thousands(token);
      std::string const asDecimal = groups == 1 ? plain + " or " + pointed : plain;
      Refuse(Quoted(token) + " is not a number; numbers are written as " +
                 (groups == 0 ? pointed : asDecimal),
             place);
    }
    if (!isNumber) {
      Refuse(token.empty() ? "a number is missing" : Quoted(token) + " is not a number", place);
    }
    m_at = end;
    return number;
  }

  /// "300 to 400", "300..400" and "300-400", which are no numbers.
  void RefuseRange(std::string const& unit, std::size_t place) const {
    std::string_view rest = unit;
    bool const isWord = StartsIgnoringCase(rest, "to ") && rest.size() > 3;
    if (isWord) rest.remove_prefix(3);
    while (!isWord && !rest.empty() && (rest.front() == '.' || rest.front() == '-')) {
      rest.remove_prefix(1);
    }
    if (rest.size() == unit.size() || Trimmed(rest).empty()) return;
    if (!IsDigit(Trimmed(rest).front())) return;
    Refuse("a range is written \"between A and B\"", place);
  }

  /// The unit of a number that stands at `place`; refused when it does not fit.
  std::string TakeUnit(Subject const& subject, std::size_t place, bool mayBeMissing) {
    SkipBlanks();
    std::size_t const unitPlace = m_at;
    std::string unit = TakeOperand();
    RefuseRange(unit, place);
    if (unit == subject.unit || (unit.empty() && mayBeMissing)) return unit;
    std::string const name = Quoted(subject.attribute.name);
    std::string const number(Trimmed(std::string_view(m_text).substr(place, unitPlace - place)));
    if (subject.unit.empty()) {
      Refuse("the attribute " + name + " has no unit, and " + Quoted(unit) + " is not one",
             unitPlace);
    }
    std::vector<std::string> targets = m_units.TargetsOf(subject.unit);
    if (unit.empty()) {
      Refuse("a number for " + name + " needs a unit: " + number + " " + subject.unit, unitPlace,
             {HintCode::OneOf, std::move(targets)});
    }
    if (!m_units.CanConvert(subject.unit, unit)) {
      std::string const possible = lumo::Joined(targets);
      Hint hint = {HintCode::DidYouMean, Alike(unit, targets)};
      if (hint.arguments.empty()) hint = {HintCode::OneOf, std::move(targets)};
      Refuse(Quoted(unit) + " is not a unit of " + name + ", which can be given in " + possible,
             unitPlace, std::move(hint));
    }
    return unit;
  }

  Bound TakeBound(Subject const& subject, bool isIncluded, bool mayLackUnit = false) {
    SkipBlanks();
    std::size_t const place = m_at;
    double const number = TakeNumber();
    return {number, TakeUnit(subject, place, mayLackUnit), isIncluded};
  }

  /// The end in the attribute's own unit, so that a record is found by the very figure that it
  /// shows in another one.
  Bound InOwnUnit(Bound bound, Subject const& subject) const {
    if (bound.unit != subject.unit) {
      auto const meant = m_units.Meant(bound.number, bound.unit, subject.unit);
      double const converted = m_units.Convert(bound.number, bound.unit, subject.unit);
      bound.number = meant ? *meant : Rounded(converted, kExactDigits);
      bound.unit = subject.unit;
    }
    return bound;
  }

  NumberTest Interval(Operator const& one, Bound const& bound) const {
    bool const isEquality = one.isBelow == one.isAbove;
    NumberTest test;
    test.match = m_match;
    if (isEquality || one.isAbove) test.low = bound;
    if (isEquality || one.isBelow) test.high = bound;
    return test;
  }

  NodePtr Numbers(Subject subject, Operator const& one) {
    bool const isIncluded = one.isIncluded || one.isBelow == one.isAbove;
    NumberTest test = Interval(one, InOwnUnit(TakeBound(subject, isIncluded), subject));
    // What is not the figure is so in no part of it, whichever part is asked for.
    if (one.isBelow && one.isAbove) test.match = Match::Overlap;
    return Leaf(std::move(subject), std::move(test));
  }

  NodePtr Between(Subject subject, std::size_t place) {
    if (subject.type == AttributeType::Date) return BetweenDates(std::move(subject), place);
    if (!IsNumeric(subject.type)) {
      Refuse("\"between\" goes with numbers and dates", place);
    }
    NumberTest test;
    test.match = m_match;
    Bound low = TakeBound(subject, true, true);
    if (!TakesWord("and")) Refuse("\"between A and B\" has no \"and\"", m_at);
    Bound const high = TakeBound(subject, true);
    // "between 1 and 2 GPa" means GPa for both.
    if (low.unit.empty()) low.unit = high.unit;
    test.low = InOwnUnit(std::move(low), subject);
    test.high = InOwnUnit(high, subject);
    if (test.low->number > test.high->number) {
      Refuse("the first number after \"between\" is the larger one", place);
    }
    return Leaf(std::move(subject), std::move(test));
  }

  NodePtr Product(std::vector<Factor> factors, std::size_t place) {
    for (Factor const& factor : factors) {
      if (IsNumeric(factor.subject.type)) continue;
      Refuse("the attribute " + Quoted(factor.subject.attribute.name) + " (" +
                 NameOf(factor.subject.type) + ") cannot stand in a product",
             place);
    }
    SkipBlanks();
    std::size_t const operatorPlace = m_at;
    Operator const* const one = TakeOperator();
    if (one == nullptr || one->isBelow == one->isAbove) {
      Refuse("a product goes with <, <=, > and >= only", operatorPlace);
    }
    SkipBlanks();
    std::size_t const numberPlace = m_at;
    Bound bound = {TakeNumber(), "", one->isIncluded};
    SkipBlanks();
    std::size_t const unitPlace = m_at;
    std::string const unit = TakeOperand();
    RefuseRange(unit, numberPlace);
    ChooseUnits(factors, unit, unitPlace);
    ProductTest test;
    test.interval = Interval(*one, bound);
    Subject subject = factors[0].subject;
    test.factors = std::move(factors);
    return Leaf(std::move(subject), std::move(test));
  }

  static std::map<std::string, double> UnitOf(std::vector<Factor> const& factors) {
    std::map<std::string, double> all;
    for (Factor const& factor : factors) {
      for (auto const& [name, power] : FactorsOf(factor.unit)) all[name] += power * factor.power;
    }
    for (auto one = all.begin(); one != all.end();) {
      one = std::fabs(one->second) < 1e-9 ? all.erase(one) : std::next(one);
    }
    return all;
  }
  static bool AreEqual(std::map<std::string, double> const& a,
                       std::map<std::string, double> const& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](auto const& x, auto const& y) {
      return x.first == y.first && std::fabs(x.second - y.second) < 1e-9;
    });
  }

  /// Those in which a factor can be multiplied. A ratio of degC says nothing, as their zero is not
  /// that of K.
  std::vector<std::string> UnitsInProducts(Factor& factor, std::size_t place) const {
    std::string const& own = factor.subject.unit;
    std::vector<std::string> targets = m_units.TargetsOf(own);
    bool const isShifted = std::any_of(
        targets.begin(), targets.end(),
        [&](std::string const& target) { return m_units.Convert(0, own, target) != 0; });
    if (!isShifted) return targets;
    if (std::find(targets.begin(), targets.end(), kAbsolute) != targets.end()) {
      factor.unit = kAbsolute;
      return {factor.unit};
    }
    Refuse("the attribute " + Quoted(factor.subject.attribute.name) +
               " cannot stand in a product: the server cannot convert " + own + " into " +
               kAbsolute,
           place);
  }

  /// Finds units of the factors in which their product has the unit that is wanted, so that the
  /// server's own factors do for products too.
  void ChooseUnits(std::vector<Factor>& factors, std::string const& unit, std::size_t place) const {
    std::map<std::string, double> const wanted = FactorsOf(unit);
    std::vector<std::vector<std::string>> choices;
    std::size_t combinations = 1;
    for (Factor& factor : factors) {
      choices.push_back(UnitsInProducts(factor, place));
      combinations *= choices.back().size();
      if (combinations > kMostCombinations) Refuse("the product has too many factors", place);
    }
    std::string const own = SymbolOf(UnitOf(factors));
    for (std::size_t i = 0; i < combinations; ++i) {
      std::size_t rest = i;
      for (std::size_t f = 0; f < factors.size(); ++f) {
        factors[f].unit = choices[f][rest % choices[f].size()];
        rest /= choices[f].size();
      }
      if (AreEqual(UnitOf(factors), wanted)) return;
    }
    std::string const offered = own.empty() ? "has no unit" : "can be given in " + own;
    if (unit.empty()) Refuse("the number needs a unit: the product " + offered, place);
    Refuse(Quoted(unit) + " is not a unit of the product, which " + offered, place,
           {HintCode::OneOf, {own}});
  }

  // ---- dates

  struct Period {
    std::int64_t from = 0;
    std::int64_t before = 0;
  };

  /// A year, a month, a day, a minute, a second or a moment; a period covers all of it.
  Period TakePeriod() {
    SkipBlanks();
    std::size_t const place = m_at;
    while (m_at < m_text.size() && !IsBlank(m_text[m_at]) && m_text[m_at] != ')') ++m_at;
    std::string text = m_text.substr(place, m_at - place);
    constexpr std::int64_t kSecond = 1'000'000;
    struct Form {
      std::size_t size;  ///< of the text
      std::string_view missing;
      std::int64_t length;  ///< 0: to be counted
    };
    constexpr Form kForms[] = {{4, "-01-01", 0},
                               {7, "-01", 0},
                               {10, "", 24 * (3600 * kSecond)},
                               {16, "", 60 * kSecond},
                               {19, "", kSecond}};
    for (Form const& form : kForms) {
      if (text.size() != form.size) continue;
      auto const from = DateTime{text + std::string(form.missing)}.Microseconds();
      if (!from) break;
      return {*from, form.length == 0 ? NextAfter(text) : *from + form.length};
    }
    auto const moment = text.size() > 19 ? DateTime{text}.Microseconds() : std::nullopt;
    if (moment) return {*moment, *moment + 1};
    Refuse((text.empty() ? "a date is missing" : Quoted(text) + " is not a date") +
               std::string("; dates are written as 2026-03-17 or 2026-03-17T09:30:00"),
           place);
  }
  /// The beginning of the year or the month after this one.
  static std::int64_t NextAfter(std::string const& text) {
    int year = 0;
    int month = 12;
    ReadInteger(text.substr(0, 4), year);
    if (text.size() == 7) ReadInteger(text.substr(5), month);
    auto const padded = [](int number, std::size_t size) {
      std::string const digits = std::to_string(number);
      return std::string(size - std::min(size, digits.size()), '0') + digits;
    };
    year += month / 12;
    month = month % 12 + 1;
    constexpr std::int64_t kYear10000 = 253'402'300'800'000'000;
    return DateTime{padded(year, 4) + "-" + padded(month, 2) + "-01"}.Microseconds().value_or(
        kYear10000);
  }

  NodePtr Dates(Subject subject, Operator const& one) {
    Period const period = TakePeriod();
    bool const isEquality = one.isBelow == one.isAbove;
    DateTest test;
    if (isEquality) {
      test = {period.from, period.before};
    } else if (one.isBelow) {
      test.before = one.isIncluded ? period.before : period.from;
    } else {
      test.from = one.isIncluded ? period.from : period.before;
    }
    return Leaf(std::move(subject), test);
  }

  NodePtr BetweenDates(Subject subject, std::size_t place) {
    Period const first = TakePeriod();
    if (!TakesWord("and")) Refuse("\"between A and B\" has no \"and\"", m_at);
    Period const last = TakePeriod();
    if (first.from > last.from) Refuse("the first date after \"between\" is the later one", place);
    return Leaf(std::move(subject), DateTest{first.from, last.before});
  }

  // ---- words and texts

  /// A text whose "and" may have been taken for the one between two conditions.
  std::string TakeText() {
    m_textHint = kQuoteTexts;
    return TakeOperand();
  }

  NodePtr Equal(Subject subject) {
    SkipBlanks();
    std::size_t const place = m_at;
    if (subject.type == AttributeType::Discrete) {
      WordTest test = {TakeWords(subject)};
      return Leaf(std::move(subject), std::move(test));
    }
    std::string const text = TakeText();
    if (text.empty()) Refuse("there is nothing to compare with", place);
    if (subject.type == AttributeType::Logical) {
      bool const isYes = EqualIgnoringCase(text, "yes") || EqualIgnoringCase(text, "true");
      bool const isNo = EqualIgnoringCase(text, "no") || EqualIgnoringCase(text, "false");
      if (!isYes && !isNo) Refuse(Quoted(text) + " is neither yes nor no", place);
      return Leaf(std::move(subject), LogicalTest{isYes});
    }
    if (!IsText(subject.type)) {
      Refuse("the attribute " + Quoted(subject.attribute.name) + " holds a " +
                 NameOf(subject.type) + ", which cannot be compared; try contains or exists",
             place);
    }
    return Leaf(std::move(subject), TextTest{TextTest::Kind::Equal, text});
  }

  std::vector<std::string> TakeWords(Subject const& subject) {
    std::vector<std::string> words;
    do {
      SkipBlanks();
      std::size_t const place = m_at;
      std::string const word = TakeKnownWord(subject.words);
      if (word.empty()) Refuse("a word is missing", place);
      words.push_back(
          subject.words.empty() ? word : subject.words[Find(subject.words, word, "word", place)]);
    } while (Takes('|'));
    return words;
  }
  /// The longest of the words that stands here in full, or else the text up to the next.
  std::string TakeKnownWord(std::vector<std::string> const& known) {
    std::size_t longest = 0;
    for (std::string const& word : known) {
      if (word.size() <= longest || Rest(m_at).size() < word.size()) continue;
      if (!StartsIgnoringCase(Rest(m_at), word)) continue;
      std::size_t end = m_at + word.size();
      while (end < m_text.size() && IsBlank(m_text[end])) ++end;
      if (EndsAt(end) || m_text[end] == '|') longest = word.size();
    }
    if (longest == 0) return TakeOperand('|');
    std::string word = m_text.substr(m_at, longest);
    m_at += longest;
    return word;
  }

  NodePtr Contains(Subject subject, TextTest::Kind kind) {
    SkipBlanks();
    std::size_t const place = m_at;
    if (IsNumeric(subject.type) || subject.type == AttributeType::Logical ||
        subject.type == AttributeType::Date) {
      Refuse("the attribute " + Quoted(subject.attribute.name) + " holds a " +
                 NameOf(subject.type) + ", which contains no text; try <, > or =",
             place);
    }
    std::string const text = TakeText();
    if (text.empty()) Refuse("there is no text to look for", place);
    return Leaf(std::move(subject), TextTest{kind, text});
  }

  std::string const m_text;
  std::vector<Attribute> const& m_attributes;
  Units const& m_units;
  Match m_match;
  std::vector<std::string> m_names;
  std::string m_textHint;  ///< what to say besides, once a text was read
  std::size_t m_at = 0;
  int m_depth = 0;
};

}  // namespace

Condition::Condition(std::string const& text, std::vector<Attribute> const& attributes,
                     lumo::Units const& units, Match match)
    : m_top(Parser(text, attributes, units, match).Read()), m_units(units) {}

}  // namespace lumo
