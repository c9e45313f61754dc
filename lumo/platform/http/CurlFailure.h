#pragma once

#include <curl/curl.h>

#include <string_view>

#include "lumo/platform/http/HttpReport.h"

namespace lumo {

/// Kind of a failure that libcurl reports. `words` are its own about it; phase and proxy are in the
/// report already.
eHttpFailure KindOf(CURLcode code, std::string_view words, HttpReport const& report);

}  // namespace lumo
