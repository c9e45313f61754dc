#pragma once

#include <string>
#include <vector>

#include "cli/Options.h"
#include "cli/Rows.h"
#include "lumo/toolkit/Partition.h"

namespace cli {

/// Which records, what of them, in which order and how many.
struct ReadChoice : RecordChoice {
  std::vector<std::string> attributes;
  std::string columns;  ///< names with commas between them
  std::string sort;
  bool isDescending = false;
  std::size_t limit = 0;  ///< 0: all
  UnitChoice units;
  bool withFiles = false;
  bool withRelations = false;
};

/// --sort, --descending, --limit, --columns and --attribute.
void AddReading(CLI::App& command, ReadChoice& choice);
/// --jobs and --chunk.
void AddWork(CLI::App& command, Context& context);

struct Counts {
  std::size_t written = 0;
  std::size_t found = 0;  ///< more than are written when these are limited
};

/// Reads records and puts them out. The columns before the values are `usual` where none are named.
Counts PutOutRecords(Context& context, lumo::Table const& table, ReadChoice const& choice,
                     std::vector<RowColumn::Kind> const& usual, bool withAllAttributes);

}  // namespace cli
