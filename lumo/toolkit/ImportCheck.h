#pragma once

#include "lumo/toolkit/Import.h"
#include "lumo/toolkit/Units.h"

namespace lumo {

/// Holds values against what the server is known to take. Not installed.
class LUMO_API ImportCheck {
 public:
  ImportCheck(Units const& units, std::string dbKey, std::size_t longestText)
      : m_units(units), m_dbKey(std::move(dbKey)), m_longestText(longestText) {}

  /// The value in the form in which it can be sent: with units where none were given, words in the
  /// server's spelling. Nothing for nothing and for an empty text. Throws `Error`
  /// (InvalidArgument), which says what is wrong with it.
  Value Checked(ImportValue const& value, Attribute const& attribute) const;
  /// Throws `Error` (InvalidArgument) for a unit in which the attribute's figures cannot be given.
  void CheckUnit(std::string const& unit, std::string const& attributeUnit) const;
  /// Takes figures that a conversion of the attribute's own unit came to back into that unit: those
  /// that were meant, when each has one.
  void TakeMeant(std::string& unit, std::string const& own,
                 std::vector<double*> const& figures) const;
  /// Throws `Error` (InvalidArgument) for a name that a record cannot have.
  void CheckName(std::string const& name) const;

 private:
  Units const& m_units;
  std::string m_dbKey;
  std::size_t m_longestText;
};

}  // namespace lumo
