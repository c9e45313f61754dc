#pragma once

#include <string>
#include <vector>

#include "sandbox/model/Records.h"
#include "sandbox/model/Subsets.h"
#include "sandbox/model/Tables.h"

namespace sandbox {

/// What all searches restrict.
struct Scope {
  std::string dbKey;
  std::string tableFilter;
  bool withGuids = false;
  Filter subsets;
};

/// Reads `<sear:searchMode>`, which changes nothing here.
void ReadMode(Checker& request);
/// A text to look for with LIKE, whatever characters it holds.
std::string Pattern(std::string const& text);
/// Appends the records that the scope holds; without tables it holds those of every one.
void WriteResults(Store& store, pugi::xml_node response, std::vector<Record> const& records,
                  Scope const& scope, std::vector<Table> const& tables = {});

}  // namespace sandbox
