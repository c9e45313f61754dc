#pragma once

#include <string_view>

namespace cli::browse {

/// A file of the page, which the build puts into the program.
struct PageFile {
  std::string_view path;  ///< "/page/chart.js"
  std::string_view type;
  std::string_view bytes;
};

/// Null when there is none with just that path.
PageFile const* FindPageFile(std::string_view path);

}  // namespace cli::browse
