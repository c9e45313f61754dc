// Prints how many times the size of its reply a call needs at its peak: reply, tree and response.

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/CountingHeap.h"
#include "bench/InstantTransport.h"
#include "bench/Replies.h"

namespace {

/// Peak of the memory that the call allocates, over the size of the reply.
double PeakOfCall(int records) {
  std::string const reply = RecordValuesReply(records);
  HttpClient::SetTransportFactory([&reply] { return InstantTransport::Of(reply); });
  LumoServiceLayerServices const services(LumoSession::CreateOne("http://localhost", nullptr));
  std::size_t const before = ResetPeak();
  GetRecordAttributesByRefResponse response;
  services.GetDataExportService()->GetRecordAttributesByRefImplPtr()->RequestRecordAttributesByRef(
      GetRecordAttributesByRefRequest::CreateOne(), &response);
  HttpClient::SetTransportFactory(nullptr);
  bool const isFilled = response.AccessRecordData().size() == static_cast<std::size_t>(records);
  if (!isFilled) std::abort();
  return static_cast<double>(Peak() - before) / static_cast<double>(reply.size());
}

}  // namespace

int main() {
  kpxtkLumoServiceLayer::Initialize();
  for (int const records : {100, 10000, 100000}) {
    std::printf("  %-36s %5.2f times\n", ("PeakMemory/" + std::to_string(records)).c_str(),
                PeakOfCall(records));
  }
  kpxtkLumoServiceLayer::Shutdown();
}
