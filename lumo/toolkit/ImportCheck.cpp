#include "lumo/toolkit/ImportCheck.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "lumo/toolkit/DataValues.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/TypedText.h"

namespace lumo {
namespace {

[[noreturn]] void Refuse(std::string const& why, Hint hint = {}) {
  throw Error(ErrorCode::InvalidArgument, why, std::move(hint));
}

std::size_t CharactersIn(std::string const& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

void CheckLength(std::string const& text, std::size_t longest) {
  std::size_t const count = CharactersIn(text);
  if (longest == 0 || count <= longest) return;
  Refuse("has a text of " + std::to_string(count) + " characters; no more than " +
         std::to_string(longest) + " are taken");
}

/// The word as the server spells it.
std::string Spelled(std::string const& word, std::vector<std::string> const& words) {
  if (words.empty() || std::find(words.begin(), words.end(), word) != words.end()) return word;
  for (std::string const& known : words) {
    if (EqualIgnoringCase(known, word)) return known;
  }
  std::vector<std::string> alike = Alike(word, words);
  std::string const why = "has no word " + Quoted(word) + "; it has " + Joined(words);
  Refuse(why, alike.empty() ? Hint{} : Hint{HintCode::DidYouMean, std::move(alike)});
}

/// Smaller and larger figures are lost on their way through units and texts.
constexpr double kSmallest = 1e-300;
constexpr double kLargest = 1e300;

void CheckFigure(double figure) {
  double const size = std::fabs(figure);
  if (size > 0 && (size < kSmallest || size > kLargest)) {
    Refuse("holds the figure " + TextOf(figure) + ", which is too " +
           (size < kSmallest ? "small" : "large"));
  }
}

void CheckOrder(double low, double high) {
  if (low > high) {
    Refuse("has a range whose ends are the wrong way round: " + TextOf(low) + " to " +
           TextOf(high));
  }
}

/// Completes and checks a value, or a cell of a table.
class Completer {
 public:
  Completer(ImportCheck const& check, Attribute const& attribute, std::size_t longestText)
      : m_check(check), m_attribute(attribute), m_longestText(longestText) {}

  void Complete(Value& value, AttributeType type, std::string const& unit,
                std::vector<std::string> const& words) const {
    std::visit([&](auto& held) { this->Check(held, type, unit, words); }, value);
  }

 private:
  using Type = AttributeType;
  using Words = std::vector<std::string>;

  void FillUnit(std::string& unit, std::string const& own) const {
    if (unit.empty()) unit = own;
    m_check.CheckUnit(unit, own);
  }

  template <class Held>
  void Check(Held& /*held*/, Type /*type*/, std::string const& /*unit*/,
             Words const& /*words*/) const {}
  void Check(std::string& held, Type type, std::string const& /*unit*/,
             Words const& /*words*/) const {
    if (type == Type::Text) CheckLength(held, m_longestText);
  }
  void Check(Words& held, Type type, std::string const& /*unit*/, Words const& words) const {
    if (type != Type::Discrete) return;
    for (std::string& word : held) word = Spelled(word, words);
    for (std::size_t i = 0; i < held.size(); ++i) {
      if (std::find(held.begin(), held.begin() + static_cast<std::ptrdiff_t>(i), held[i]) !=
          held.begin() + static_cast<std::ptrdiff_t>(i)) {
        Refuse("has the word " + Quoted(held[i]) + " twice");
      }
    }
    bool const isColumn = &words != &m_attribute.words;
    if (!isColumn && !m_attribute.isMultiValued && held.size() > 1) {
      Refuse("takes one word only, not " + std::to_string(held.size()));
    }
  }
  void Check(Quantity& held, Type /*type*/, std::string const& unit, Words const& /*words*/) const {
    FillUnit(held.unit, unit);
    CheckFigure(held.value);
    m_check.TakeMeant(held.unit, unit, {&held.value});
  }
  void Check(Range& held, Type /*type*/, std::string const& unit, Words const& /*words*/) const {
    FillUnit(held.unit, unit);
    if (held.low) CheckFigure(*held.low);
    if (held.high) CheckFigure(*held.high);
    if (held.low && held.high) CheckOrder(*held.low, *held.high);
    std::vector<double*> ends;
    for (auto* const end : {&held.low, &held.high}) {
      if (*end) ends.push_back(&**end);
    }
    m_check.TakeMeant(held.unit, unit, ends);
  }
  void Check(Points& held, Type /*type*/, std::string const& unit, Words const& /*words*/) const {
    FillUnit(held.unit, unit);
    std::vector<double*> figures;
    for (Point& point : held.points) {
      CheckFigure(point.value);
      CheckParameters(point.parameters);
      figures.push_back(&point.value);
    }
    m_check.TakeMeant(held.unit, unit, figures);
  }
  void Check(Curves& held, Type /*type*/, std::string const& unit, Words const& /*words*/) const {
    for (Curve& curve : held.curves) {
      FillUnit(curve.yUnit, unit);
      CheckParameters(curve.parameters);
      for (double const figure : curve.y) CheckFigure(figure);
      for (std::size_t i = 0; i < std::min(curve.y.size(), curve.yHigh.size()); ++i) {
        if (!std::isnan(curve.yHigh[i])) CheckOrder(curve.y[i], curve.yHigh[i]);
      }
      ParameterInfo const* const axis = Info(curve.xName);
      std::vector<double*> figures = All(curve.y);
      for (double* const figure : All(curve.yHigh)) figures.push_back(figure);
      m_check.TakeMeant(curve.yUnit, unit, figures);
      if (axis != nullptr && !curve.xUnit.empty()) {
        m_check.TakeMeant(curve.xUnit, axis->unit, All(curve.x));
      }
      for (std::string& word : curve.xWords) {
        if (axis != nullptr && !word.empty()) word = Spelled(word, axis->words);
      }
    }
  }
  void Check(std::shared_ptr<Grid const>& held, Type /*type*/, std::string const& /*unit*/,
             Words const& /*words*/) const {
    if (!held) return;
    auto grid = std::make_shared<Grid>(*held);
    std::vector<GridColumnInfo const*> infos;
    for (Grid::Column& column : grid->columns) {
      infos.push_back(nullptr);
      for (GridColumnInfo const& info : m_attribute.columns) {
        if (info.name == column.name) infos.back() = &info;
      }
    }
    for (Grid::Row& row : grid->rows) {
      for (std::size_t i = 0; i < std::min(row.cells.size(), infos.size()); ++i) {
        if (infos[i] == nullptr) continue;
        Complete(row.cells[i], infos[i]->type, infos[i]->unit, infos[i]->words);
      }
    }
    held = std::move(grid);
  }

  static std::vector<double*> All(std::vector<double>& figures) {
    std::vector<double*> all;
    all.reserve(figures.size());
    for (double& figure : figures) all.push_back(&figure);
    return all;
  }

  ParameterInfo const* Info(std::string const& name) const {
    for (ParameterInfo const& info : m_attribute.parameters) {
      if (info.name == name) return &info;
    }
    return nullptr;
  }
  void CheckParameters(std::vector<Parameter>& parameters) const {
    for (Parameter& parameter : parameters) {
      ParameterInfo const* const info = Info(parameter.name);
      auto* const word = std::get_if<std::string>(&parameter.value);
      if (info != nullptr && word != nullptr) *word = Spelled(*word, info->words);
      auto* const figure = std::get_if<double>(&parameter.value);
      if (info != nullptr && figure != nullptr && !parameter.unit.empty()) {
        m_check.TakeMeant(parameter.unit, info->unit, {figure});
      }
    }
  }

  ImportCheck const& m_check;
  Attribute const& m_attribute;
  std::size_t m_longestText;
};

}  // namespace

Value ImportCheck::Checked(ImportValue const& value, Attribute const& attribute) const {
  Value checked;
  if (auto const* const typed = std::get_if<TypedText>(&value.content)) {
    checked = ReadTyped(*typed, attribute);
  } else {
    checked = std::get<Value>(value.content);
  }
  if (std::holds_alternative<std::monostate>(checked)) return checked;
  Completer(*this, attribute, m_longestText)
      .Complete(checked, attribute.type, attribute.unit, attribute.words);
  ToDataValue(checked, attribute, m_dbKey, m_units);  // finds what else does not fit
  return checked;
}

void ImportCheck::CheckUnit(std::string const& unit, std::string const& attributeUnit) const {
  if (unit == attributeUnit || m_units.CanConvert(unit, attributeUnit)) return;
  if (attributeUnit.empty()) Refuse("takes figures without a unit, not in " + Quoted(unit));
  std::vector<std::string> const taken = m_units.TargetsOf(attributeUnit);
  std::string const why =
      "cannot be given in " + Quoted(unit) + "; it is kept in " + Quoted(attributeUnit);
  std::vector<std::string> alike = Alike(unit, taken);
  if (!alike.empty()) Refuse(why, {HintCode::DidYouMean, std::move(alike)});
  Refuse(why + " and taken in " + Joined(taken));
}

void ImportCheck::TakeMeant(std::string& unit, std::string const& own,
                            std::vector<double*> const& figures) const {
  if (unit == own) return;
  std::vector<double> meant;
  for (double const* const figure : figures) {
    bool const isFigure = std::isfinite(*figure);
    auto const one = isFigure ? m_units.Meant(*figure, unit, own) : std::optional<double>(*figure);
    if (!one) return;
    meant.push_back(*one);
  }
  for (std::size_t i = 0; i < figures.size(); ++i) *figures[i] = meant[i];
  unit = own;
}

void ImportCheck::CheckName(std::string const& name) const {
  if (Trimmed(name).empty()) Refuse("the record has no name");
  if (Trimmed(name).size() != name.size()) Refuse("the name begins or ends with a blank");
  if (name.find_first_of("\r\n\t") != std::string::npos) Refuse("the name has a line break or tab");
  if (!CanBeSent(name)) Refuse("the name holds a character that cannot be sent");
  CheckLength(name, m_longestText);
}

}  // namespace lumo
