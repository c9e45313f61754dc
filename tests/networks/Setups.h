#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "lumo/Toolkit.h"

/// A set-up that is broken, and what its users must be told.
struct Setup {
  char const* name;
  std::string url;
  lumo::ConnectOptions options;
  lumo::ErrorCode code;
  lumo::HintCode hint;
  char const* stage;  ///< where the doctor finds the fault
  std::string cause;  ///< what is said holds this
  std::string next;   ///< the next step, as the command words it, holds this
  std::map<std::string, std::string> environment = {};
};

/// Options for one try without a log-on.
lumo::ConnectOptions OneTry(lumo::Credentials const& credentials = lumo::Anonymous{});

/// Tries each set-up with a call and with the doctor. All that they say is printed.
void CheckAll(std::vector<Setup> const& setups);
