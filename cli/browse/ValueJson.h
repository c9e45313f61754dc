#pragma once

#include <nlohmann/json.hpp>

#include <string>

#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Error.h"

namespace cli::browse {

using Json = nlohmann::json;

/// The figure without what arithmetic left behind; null for one that is not finite.
Json JsonOf(double figure);
/// An object with "kind" and what the page needs to show the value; null for none. Bytes of files
/// are left out.
Json JsonOf(lumo::Value const& value);
/// The address if a page may link to it, which those of scripts and files of the machine are not;
/// empty otherwise.
std::string SafeAddress(std::string const& address);
/// As text of JSON; bytes that are not UTF-8 are replaced.
std::string TextOf(Json const& json);

}  // namespace cli::browse
