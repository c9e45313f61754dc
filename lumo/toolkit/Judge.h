#pragma once

#include <optional>
#include <string>

#include "lumo/session/ServiceLayerResponse.h"
#include "lumo/toolkit/Options.h"

namespace lumo {

/// What is wrong with a call, as code, text and details; nothing for a success. `outcome` may be
/// null, `badValue` is what a value of the reply had that did not convert.
std::optional<Error> Judge(SmartPtr<ServiceLayerResponse> const& outcome,
                           std::string const& badValue, std::string const& url,
                           ConnectOptions const& options);

}  // namespace lumo
