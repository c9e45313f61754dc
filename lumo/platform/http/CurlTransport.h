#pragma once

#include "lumo/platform/http/HttpTransport.h"

namespace lumo {

/// The transport over libcurl: HTTP/1.1, kept connections, body in memory.
SmartPtr<HttpTransport> MakeCurlTransport();

}  // namespace lumo
