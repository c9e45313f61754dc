#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/Session.h"

/// What a call came to, and how many entries its response has.
struct Called {
  SmartPtr<ServiceLayerResponse> outcome;
  std::size_t entries;
};

/// An operation with a default request.
struct OperationRow {
  std::string service;
  std::string operation;
  std::string content;  ///< of the request's body
  std::string reply;    ///< content of a reply's body, which holds one entry
  std::function<Called(LumoServiceLayerServices&)> call;
};

inline void PrintTo(OperationRow const& row, std::ostream* out) { *out << row.operation; }

/// All 30.
std::vector<OperationRow> EveryOperation();
