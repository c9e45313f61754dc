#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lumo/toolkit/Gate.h"
#include "lumo/toolkit/Pipeline.h"
#include "lumo/toolkit/Reader.h"
#include "lumo/toolkit/Source.h"

namespace lumo {

using RecordPipeline = Pipeline<std::vector<RecordHead>, std::vector<Record>>;

/// What a stream of records consists of. Not installed.
struct RecordStream::Parts {
  using Clock = std::chrono::steady_clock;

  Parts(std::shared_ptr<SelectionParts const> what, std::vector<std::string> attributes,
        ReadOptions const& readOptions);

  /// The attributes are looked up once.
  ReadPlan const& Plan();
  /// Makes columns of the records.
  ColumnBuilder& Builder();
  /// A connection that ends with the stream's work.
  std::shared_ptr<Connection> Link() const;
  /// Starts the workers.
  void Start();
  /// Waits for the next chunk; false at the end.
  bool Load();
  lumo::Progress Progress() const;
  void Tell() const;
  PipelineOptions WorkOptions();

  std::shared_ptr<SelectionParts const> selection;
  std::vector<std::string> names;
  ReadOptions options;
  std::optional<Clock::time_point> deadline;
  std::shared_ptr<ReadPlan const> plan;
  std::optional<ColumnBuilder> builder;
  int workers = 0;
  std::shared_ptr<Gate> gate;
  std::shared_ptr<ChunkSize> size;
  std::unique_ptr<RecordSource> source;
  std::unique_ptr<RecordPipeline> pipeline;  // ends before what its workers use

  std::vector<Record> chunk;
  std::size_t place = 0;
  std::size_t done = 0;  // records handed over, those of the present chunk too
  bool hasEnded = false;
};

}  // namespace lumo
