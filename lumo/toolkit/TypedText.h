#pragma once

#include "lumo/toolkit/Import.h"

/// Texts that people type into sheets. Not installed.
namespace lumo {

/// What the text means for the attribute; nothing for an empty one. Units and words are taken as
/// they are. Throws `Error` (InvalidArgument), whose text does not name the attribute.
LUMO_API Value ReadTyped(TypedText const& typed, Attribute const& attribute);

/// A heading such as "Density [g/cm^3]".
struct Heading {
  Attribute const* attribute = nullptr;
  std::string unit = {};  ///< empty for none
};
/// Throws `Error` (NotFound) with names that are alike.
LUMO_API Heading ReadHeading(std::string_view text, std::vector<Attribute> const& attributes);

/// The attribute of that name, whatever its case; throws `Error` (NotFound).
LUMO_API Attribute const& NamedAttribute(std::vector<Attribute> const& attributes,
                                         std::string const& name);

/// What an error says of an attribute, without its name, and with what may have been meant.
LUMO_API std::string WhyOf(Error const& error, std::string const& attribute);

}  // namespace lumo
