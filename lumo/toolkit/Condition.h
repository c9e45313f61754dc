#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Units.h"

namespace lumo {

/// How a comparison meets a value that is a range; points and curves count as the range from their
/// least figure to their largest. An end that is not set is without limit. "!=" holds where no part
/// of the range is the number, with either; "not" holds where what follows it does not.
enum class Match {
  Overlap,  ///< some part of the range fulfils the condition
  All       ///< the whole range does
};

/// A condition on the values of a record:
///
///     density < 3000 kg/m^3 and not (durability: sea water = Unacceptable)
///
///     ATTRIBUTE < | <= | > | >= | = | !=  NUMBER UNIT      "yield strength >= 200 MPa"
///     ATTRIBUTE between NUMBER and NUMBER UNIT             "density between 2 and 3 g/cm^3"
///     PRODUCT < | ... NUMBER UNIT             "young's modulus / density > 0.025 GPa.m^3/kg"
///     ATTRIBUTE < | ... DATE                  "last reviewed >= 2026-03", "last reviewed = 2026"
///     ATTRIBUTE = | != WORD|WORD...           "recyclable = yes", "country = Norway|Sweden"
///     ATTRIBUTE contains | lacks TEXT         "typical uses contains aircraft"
///     ATTRIBUTE exists | is missing
///     ATTRIBUTE[COLUMN] ...                   "composition[Element] contains Cr", in any row
///     not X, X and Y, X or Y, (X)             "and" binds closer than "or"
///
/// Attributes are taken by a unique beginning or by words, without regard to case; names and texts
/// that hold such words as "and" may stand in quotation marks. A number needs a unit wherever the
/// attribute has one, and units are converted by the server's factors alone. In a product
/// attributes stand between "*" and "/", each with "^" and a number behind it where it has a power;
/// temperatures are taken in K there, as ratios of degC say nothing.
///
/// Of a record that lacks the value nothing is known but that it is missing: it fulfils neither a
/// comparison nor its contrary. Only "lacks" holds for it.
class LUMO_API Condition {
 public:
  /// Reads a condition on a table with these attributes and these units. Throws `Error`
  /// (InvalidArgument, or NotFound and Ambiguous for a name) that says what is wrong, and where in
  /// the text.
  Condition(std::string const& text, std::vector<Attribute> const& attributes,
            lumo::Units const& units, Match match = Match::Overlap);
  /// Holds when both do.
  static Condition Both(Condition const& a, Condition const& b);

  /// Names of the attributes whose values it looks at.
  std::vector<std::string> Attributes() const;
  /// The value of the attribute with that name.
  using ValueOf = std::function<Value const&(std::string const& attribute)>;
  /// Whether a record with these values fulfils it; nothing when its values do not tell.
  std::optional<bool> Judge(ValueOf const& valueOf) const;

  struct Node;  ///< what it is made of, for the toolkit alone
  Condition(std::shared_ptr<Node const> top, Units units)
      : m_top(std::move(top)), m_units(std::move(units)) {}
  /// For the toolkit alone.
  std::shared_ptr<Node const> const& Top() const { return m_top; }
  /// Those by which its figures were converted.
  lumo::Units const& Units() const { return m_units; }

 private:
  std::shared_ptr<Node const> m_top;
  lumo::Units m_units;
};

}  // namespace lumo
