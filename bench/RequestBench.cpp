#include <benchmark/benchmark.h>

#include <string>

#include "bench/BareParse.h"
#include "bench/Ratio.h"
#include "lumo/LumoServiceLayer.h"

namespace {

/// A request for ten attributes of many records, from the object to the bytes.
void RequestWriting(benchmark::State& state) {
  auto const request = GetRecordAttributesByRefRequest::CreateOne();
  for (int i = 1; i <= 10; ++i) {
    auto const attribute = AttributeReference::CreateOne();
    attribute->SetDBKey("ENG_MATERIALS");
    attribute->SetName("Thermal conductivity");
    request->AddAttributeReference(attribute);
  }
  for (int i = 1; i <= state.range(0); ++i) {
    auto const record = RecordReference::CreateOne();
    record->SetDBKey("ENG_MATERIALS");
    record->SetRecordGUID("7c9e6679-7425-40de-944b-e07fc1f90ae7");
    request->AddRecordReference(record);
  }
  auto const session = LumoSession::CreateOne("http://localhost", nullptr);
  GetRecordAttributesByRefImpl const operation(session.get());
  auto const message = operation.BuildRequestHandle(request);
  std::string const bytes = message->GetRequestBuffer()->GetBytes();
  BareParse bareParse(bytes);
  MeasureRound(state, 1, bareParse,
               [&] { benchmark::DoNotOptimize(operation.BuildRequestHandle(request)); });
}

}  // namespace

BENCHMARK(RequestWriting)->Arg(10000)->Unit(benchmark::kMillisecond);
