#pragma once

#include <string>

#include "sandbox/model/Attributes.h"
#include "sandbox/model/Units.h"
#include "sandbox/store/Store.h"
#include "sandbox/wire/Checker.h"

namespace sandbox {

/// A value as the store keeps it.
struct StoredValue {
  std::string xml;   ///< content of the value's element in a reply
  std::string low;   ///< smallest figure, in the attribute's unit; empty for other values
  std::string high;  ///< largest figure
  std::string text;  ///< what text searches look at; words of discrete values one to a line
};

/// Name of the attribute's values on the wire, without prefix.
std::string ElementName(Attribute const& attribute);

/// Reads a value in the form of an import. `current` is the content of the value that the record
/// has, for changes of tabular data. Throws `Fault` when the form is wrong or does not fit the
/// attribute.
StoredValue ReadImportValue(Store& store, Checker& in, Attribute const& attribute,
                            std::string const& current);
/// Puts the value in the place of the record's old one.
void StoreValue(Store& store, int recordId, int attributeId, StoredValue const& value);
/// Content of the record's value; empty when it has none.
std::string CurrentValue(Store& store, int recordId, int attributeId);

/// Appends a value's element to a reply, in the units of the context. Binary data comes inline when
/// `url` is empty, else as that URL.
void WriteValue(Store& store, pugi::xml_node parent, Attribute const& attribute,
                std::string const& xml, UnitContext const& context, std::string const& url);

}  // namespace sandbox
