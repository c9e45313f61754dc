#include "lumo/toolkit/Records.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "lumo/toolkit/Arrow.h"
#include "lumo/toolkit/Gate.h"
#include "lumo/toolkit/Stream.h"

namespace lumo {

// ---- one record

Record::Record() {
  static auto const none = std::make_shared<Data const>();
  m_data = none;
}
Record::Record(std::shared_ptr<Data const> data) : m_data(std::move(data)) {}

RecordHead const& Record::Head() const { return m_data->head; }
std::vector<Value> const& Record::Values() const { return m_data->values; }

std::vector<Attribute> const& Record::Attributes() const {
  static std::vector<Attribute> const none;
  return m_data->plan ? m_data->plan->Shown() : none;
}

Value const& Record::operator[](std::string_view attribute) const {
  if (!m_data->plan) throw Error(ErrorCode::InvalidArgument, "the record is empty");
  return m_data->values[m_data->plan->PlaceOf(attribute)];
}

std::optional<double> Record::Number(std::string_view attribute, std::string const& unit) const {
  Value const& value = (*this)[attribute];
  if (!NumberIn(value)) return std::nullopt;
  return m_data->plan->KnownUnits().NumberIn(value, unit);
}

// ---- many records

RecordStream::Parts::Parts(std::shared_ptr<SelectionParts const> what,
                           std::vector<std::string> attributes, ReadOptions const& readOptions)
    : selection(std::move(what)), names(std::move(attributes)), options(readOptions) {}

PipelineOptions RecordStream::Parts::WorkOptions() {
  PipelineOptions work;
  work.isOrdered = options.isOrdered;
  work.cancel = options.cancel;
  work.deadline = deadline;
  work.onCall = selection->table->pool->Settings().options.onCall;
  return work;
}

ReadPlan const& RecordStream::Parts::Plan() {
  if (plan) return *plan;
  if (options.timeLimit.count() > 0) deadline = Clock::now() + options.timeLimit;
  plan = std::make_shared<ReadPlan const>(*Link(), selection->table, names, options);
  return *plan;
}

ColumnBuilder& RecordStream::Parts::Builder() {
  if (!builder) {
    // The figures are in these units already.
    builder = ColumnBuilder::Wide(Plan().Shown(), selection->table->info.KnownUnits(*Link()));
  }
  return *builder;
}

std::shared_ptr<Connection> RecordStream::Parts::Link() const {
  auto connection = selection->table->pool->Lend();
  connection->Scope().cancel = options.cancel;
  connection->Scope().deadline = deadline;
  return connection;
}

void RecordStream::Parts::Start() {
  Plan();
  Pool& pool = *selection->table->pool;
  int const most = static_cast<int>(pool.MostCalls());
  workers = options.concurrency <= 0 ? most : std::min(options.concurrency, most);
  gate = Gate::Of(pool.Settings().url);
  size =
      std::make_shared<ChunkSize>(options.chunkSize, plan->Attributes().size(), options.withFiles);
  source = std::make_unique<RecordSource>(selection, [size = size] { return size->Get(); });
  pipeline = std::make_unique<RecordPipeline>(
      [this](Connection& connection) { return source->Next(connection); },
      [reader = Reader(plan, size)](Connection& connection, std::vector<RecordHead>&& heads) {
        return reader.Read(connection, std::move(heads));
      },
      WorkOptions());
  pipeline->Start(pool.Lend(static_cast<std::size_t>(workers)));
}

Progress RecordStream::Parts::Progress() const {
  lumo::Progress progress;
  progress.recordsDone = done;
  if (!pipeline) return progress;
  progress.recordsTotal = source->Total();
  progress.bytes = pipeline->Received();
  progress.workers = gate->Width(workers);
  progress.chunk = size->Get();
  return progress;
}

void RecordStream::Parts::Tell() const {
  if (options.onProgress) options.onProgress(Progress());
}

bool RecordStream::Parts::Load() {
  if (hasEnded) return false;
  try {
    if (!pipeline) Start();
    std::optional<std::vector<Record>> next = pipeline->Take([this] { Tell(); });
    hasEnded = !next;
    chunk = next ? std::move(*next) : std::vector<Record>();
    place = 0;
    done += chunk.size();
    Tell();
  } catch (Error const& error) {
    hasEnded = true;
    ErrorDetails details = error.Details();
    details.recordsDone = done;
    std::string const after = " (after " + std::to_string(done) + " records)";
    throw Error(error.Code(), error.what() + (done == 0 ? "" : after), std::move(details));
  }
  return !hasEnded;
}

RecordStream::RecordStream(std::unique_ptr<Parts> parts) : m_parts(std::move(parts)) {}
RecordStream::RecordStream(RecordStream&& other) noexcept = default;
RecordStream& RecordStream::operator=(RecordStream&& other) noexcept = default;
RecordStream::~RecordStream() = default;

bool RecordStream::NextChunk(std::vector<Record>& chunk) {
  chunk.clear();
  if (m_parts->place == m_parts->chunk.size() && !m_parts->Load()) return false;
  auto const begin = m_parts->chunk.begin() + static_cast<std::ptrdiff_t>(m_parts->place);
  std::move(begin, m_parts->chunk.end(), std::back_inserter(chunk));
  m_parts->chunk.clear();
  m_parts->place = 0;
  return true;
}

std::shared_ptr<Columns const> RecordStream::NextColumns() {
  std::vector<Record> chunk;
  if (!NextChunk(chunk)) return nullptr;
  ColumnBuilder& builder = m_parts->Builder();
  for (Record const& record : chunk) builder.Add(record.Head(), record.Values());
  return builder.Take();
}

void RecordStream::ExportArrow(ArrowArrayStream* out) && {
  auto const stream = std::make_shared<RecordStream>(std::move(*this));
  ExportStream(
      stream->m_parts->Builder().Fields(), [stream] { return stream->NextColumns(); }, out);
}

std::vector<Attribute> const& RecordStream::Attributes() { return m_parts->Plan().Shown(); }

Progress RecordStream::Progress() const { return m_parts->Progress(); }

RecordStream::iterator RecordStream::begin() {
  iterator at(this);
  at.SkipEnd();
  return at;
}

Record const& RecordStream::iterator::operator*() const {
  return m_stream->m_parts->chunk[m_stream->m_parts->place];
}

RecordStream::iterator& RecordStream::iterator::operator++() {
  ++m_stream->m_parts->place;
  SkipEnd();
  return *this;
}

void RecordStream::iterator::SkipEnd() {
  Parts& parts = *m_stream->m_parts;
  if (parts.place == parts.chunk.size() && !parts.Load()) m_stream = nullptr;
}

}  // namespace lumo
