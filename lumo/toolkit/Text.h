#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/platform/core/Export.h"

/// Helpers for texts inside the toolkit. Not installed.
namespace lumo {

LUMO_API std::string ToBase64(std::vector<std::uint8_t> const& bytes);
/// Nothing for a text that is not Base64.
LUMO_API std::optional<std::vector<std::uint8_t>> FromBase64(std::string_view text);
LUMO_API std::string_view Trimmed(std::string_view text);
/// ASCII letters only.
LUMO_API char Lower(char c);
LUMO_API std::string Lower(std::string_view text);
LUMO_API bool EqualIgnoringCase(std::string_view a, std::string_view b);
LUMO_API bool StartsIgnoringCase(std::string_view text, std::string_view beginning);
/// Whether the text is UTF-8 without characters that XML cannot carry.
LUMO_API bool CanBeSent(std::string const& text);
/// The parts with ", " between them.
LUMO_API std::string Joined(std::vector<std::string> const& parts);
/// The text in quotation marks.
LUMO_API std::string Quoted(std::string_view text);
/// Words that are alike, the likest first; few of them, none that are far off.
LUMO_API std::vector<std::string> Alike(std::string_view text,
                                        std::vector<std::string> const& words);

}  // namespace lumo
