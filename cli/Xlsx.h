#pragma once

#include <string>
#include <vector>

namespace cli {

/// Whether the bytes begin as those of an xlsx file do.
bool IsXlsx(std::string const& bytes);

/// The texts of the first sheet that is visible, row by row; dates in ISO form, numbers as they are
/// kept, those that are shown in percent as "22 %". Throws `lumo::Error` for what is not such a
/// file.
std::vector<std::vector<std::string>> ReadXlsx(std::string const& bytes);

}  // namespace cli
