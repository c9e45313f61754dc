#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lumo/toolkit/Options.h"
#include "lumo/toolkit/Value.h"

namespace lumo {

/// How figures of one unit become figures of another: target = source * factor + offset.
struct UnitStep {
  std::string target = {};  ///< the other unit
  double factor = 1;        ///< the source is multiplied by
  double offset = 0;        ///< then added

  /// Without the digits that are lost when a large offset all but cancels the figure: 273.25 K are
  /// 0.1 degC, not 0.10000000000002274.
  LUMO_API double operator()(double figure) const;
  LUMO_API double operator()(double figure, ConvertedDigits digits) const;
  /// The figure with the fewest digits that comes to `converted` the other way round, rounded to
  /// the digits that `ConvertedDigits::Enough` leaves; nothing when there is none with three digits
  /// fewer.
  LUMO_API std::optional<double> Meant(double converted) const;
};

/// A unit system, with a currency perhaps: for each unit of a database the one that figures are
/// shown in. Copies share their tables; safe to use from several threads.
class LUMO_API UnitSystem {
 public:
  /// Leaves all units as they are.
  UnitSystem();
  explicit UnitSystem(std::map<std::string, UnitStep> steps);

  /// The unit in which figures of that unit are shown; the unit itself when the system says
  /// nothing about it.
  std::string const& UnitFor(std::string const& unit) const;
  /// Null when figures of that unit stay as they are.
  UnitStep const* StepFor(std::string const& unit) const;
  /// The value with all its figures in the units of the system: ranges, points, curves with their
  /// axes, parameters, and the cells of grids. A value that is in the system already stays as it
  /// is.
  Value Convert(Value value, ConvertedDigits digits = ConvertedDigits::All) const;

 private:
  std::shared_ptr<std::map<std::string, UnitStep> const> m_steps;
};

/// Units of a database and the server's own factors between them; no other ones are used, but two
/// of them may be joined: degF become K by way of degC. Copies share their tables; safe to use from
/// several threads.
///
///     double const density = units.Convert(2.7, "g/cm^3", "kg/m^3");
class LUMO_API Units {
 public:
  /// Knows no unit, and converts none but into itself.
  Units();
  explicit Units(std::map<std::string, std::vector<UnitStep>> steps);

  /// What the server told: for each unit the others that its figures become.
  std::map<std::string, std::vector<UnitStep>> const& Steps() const;
  /// Whether the server told of this unit.
  bool Knows(std::string const& unit) const;
  /// What figures of that unit can be converted into, itself included, in the server's order.
  std::vector<std::string> TargetsOf(std::string const& unit) const;
  /// Whether it told how one becomes the other.
  bool CanConvert(std::string const& from, std::string const& to) const;

  /// Throws `Error` (InvalidArgument), which names both units and what `from` converts into.
  double Convert(double figure, std::string const& from, std::string const& to) const;
  /// The value with its own figures in that unit; axes and parameters keep theirs. Of a grid the
  /// columns that can be converted are. Throws as the other does, and for a value without figures.
  Value Convert(Value value, std::string const& to) const;
  /// `UnitStep::Meant` of a figure that may have been converted from `to` into `from` before;
  /// nothing where it is a figure of its own.
  std::optional<double> Meant(double figure, std::string const& from, std::string const& to) const;
  /// `NumberIn` the value, in that unit; nothing for a value without a number. Throws as the
  /// others do.
  std::optional<double> NumberIn(Value const& value, std::string const& unit) const;

 private:
  std::optional<UnitStep> Find(std::string const& from, std::string const& to) const;
  UnitStep Step(std::string const& from, std::string const& to) const;

  std::shared_ptr<std::map<std::string, std::vector<UnitStep>> const> m_steps;
};

}  // namespace lumo
