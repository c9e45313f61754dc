// Prints what memory a call takes, as multiples of the size of its reply: its bytes and the
// response. The last line compares with the records alone.

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/CountingHeap.h"
#include "bench/InstantTransport.h"
#include "bench/Replies.h"

namespace {

using Record = SmartPtr<RecordData>;

/// Makes a call for that many records.
SmartPtr<GetRecordAttributesByRefResponse> Call(std::string const& reply) {
  HttpClient::SetTransportFactory([&reply] { return InstantTransport::Of(reply); });
  LumoServiceLayerServices const services(LumoSession::CreateOne("http://localhost", nullptr));
  HttpClient::SetTransportFactory(nullptr);
  auto response = GetRecordAttributesByRefResponse::CreateOne();
  services.GetDataExportService()->GetRecordAttributesByRefImplPtr()->RequestRecordAttributesByRef(
      GetRecordAttributesByRefRequest::CreateOne(), response.get());
  if (response->AccessRecordData().empty()) std::abort();
  return response;
}

void Print(char const* what, int records, std::size_t bytes, std::size_t of) {
  std::string const name = std::string(what) + "/" + std::to_string(records);
  std::printf("  %-36s %5.2f times\n", name.c_str(),
              static_cast<double>(bytes) / static_cast<double>(of));
}

/// What a call for that many records takes at its peak, what its response keeps, and what it comes
/// to when the text of the reply is asked for.
void PrintCall(int records) {
  std::string const reply = RecordValuesReply(records);
  std::size_t const before = ResetPeak();
  auto const response = Call(reply);
  Print("PeakMemory", records, Peak() - before, reply.size());
  Print("KeptMemory", records, InUse() - before, reply.size());
  if (response->GetServiceLayerResponse()->GetResponseMessage().empty()) std::abort();
  Print("PeakMemoryWithText", records, Peak() - before, reply.size());
  Print("KeptMemoryWithText", records, InUse() - before, reply.size());
}

/// About every `step`-th record of a reply; the rest is gone. They lie in their slabs at all
/// places, which steps of one size need not do.
std::vector<Record> Keep(int records, std::size_t step) {
  std::vector<Record> kept;
  auto const response = Call(RecordValuesReply(records));
  auto const& all = response->AccessRecordData();
  kept.reserve(all.size() / step);
  for (std::size_t i = 0; i < all.size() / step; ++i) kept.push_back(all[i * step + i % step % 7]);
  return kept;
}

/// Bytes that records of a reply of that size hold when every `step`-th is kept.
std::size_t BytesOfKept(int records, std::size_t step) {
  std::size_t const before = ResetPeak();
  std::vector<Record> const kept = Keep(records, step);
  return InUse() - before;
}

}  // namespace

int main() {
  kpxtkLumoServiceLayer::Initialize();
  for (int const records : {100, 10000, 100000}) PrintCall(records);
  constexpr int kStep = 200;
  constexpr int kKept = 500;
  Print("OneOf200Records", kKept * kStep, BytesOfKept(kKept * kStep, kStep), BytesOfKept(kKept, 1));
  kpxtkLumoServiceLayer::Shutdown();
}
