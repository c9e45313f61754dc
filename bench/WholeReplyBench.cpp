// What comes after the last byte of a reply: a transport inside the process hands it out.

#include <benchmark/benchmark.h>

#include <string>

#include "bench/BareParse.h"
#include "bench/InstantTransport.h"
#include "bench/Ratio.h"
#include "bench/Replies.h"
#include "lumo/LumoServiceLayer.h"

namespace {

SmartPtr<LumoSession> SessionWith(std::string const& reply) {
  HttpClient::SetTransportFactory([&reply] { return InstantTransport::Of(reply); });
  auto session = LumoSession::CreateOne("http://localhost", nullptr);
  HttpClient::SetTransportFactory(nullptr);
  return session;
}

/// Calls of one operation that get one reply.
template <class Impl, class Response, std::string (*Reply)(int)>
class Calls {
 public:
  explicit Calls(benchmark::State& state)
      : m_state(state), m_reply(Reply(static_cast<int>(state.range(0)))) {}
  std::string const& ReplyBytes() const { return m_reply; }
  /// A response that the caller releases.
  SmartPtr<Response> Make() {
    auto response = Response::CreateOne();
    m_operation.ExecuteRequestInternal(nullptr, response.get(), nullptr);
    if (!response->GetServiceLayerResponse()->Succeeded()) m_state.SkipWithError("a call failed");
    return response;
  }

 private:
  benchmark::State& m_state;
  std::string m_reply;
  SmartPtr<LumoSession> m_session = SessionWith(m_reply);
  Impl m_operation{m_session.get()};
};

using Records =
    Calls<GetRecordAttributesByRefImpl, GetRecordAttributesByRefResponse, RecordValuesReply>;
using Search = Calls<SimpleTextSearchImpl, SimpleTextSearchResponse, SearchReply>;
using Tree = Calls<GetChildNodesImpl, GetChildNodesResponse, TreeReply>;
using Tables = Calls<GetTablesImpl, GetTablesResponse, TableListReply>;

/// From the reply's bytes to the response and its release.
template <class TheCalls>
void WholeReply(benchmark::State& state) {
  TheCalls calls(state);
  BareParse bareParse(calls.ReplyBytes());
  MeasureRound(state, 1, bareParse, [&] { calls.Make(); });
}

/// The same without the release.
void Building(benchmark::State& state) {
  Records calls(state);
  BareParse bareParse(calls.ReplyBytes());
  SmartPtr<GetRecordAttributesByRefResponse> response;
  MeasureRound(
      state, 1, bareParse, [&] { response.Reset(); }, [&] { response = calls.Make(); });
}

/// The release of the response and all that it holds.
void Releasing(benchmark::State& state) {
  Records calls(state);
  BareParse bareParse(calls.ReplyBytes());
  SmartPtr<GetRecordAttributesByRefResponse> response;
  MeasureRound(
      state, 1, bareParse, [&] { response = calls.Make(); }, [&] { response.Reset(); });
}

/// What handing out the reply takes in `WholeReply`, and copying it in a bare parse.
void Copying(benchmark::State& state) {
  std::string const reply = RecordValuesReply(static_cast<int>(state.range(0)));
  BareParse bareParse(reply);
  MeasureRound(state, 1, bareParse, [&] { benchmark::DoNotOptimize(std::string(reply)); });
}

/// The text of the reply, which is made from its bytes.
void ReplyText(benchmark::State& state) {
  Records calls(state);
  BareParse bareParse(calls.ReplyBytes());
  SmartPtr<GetRecordAttributesByRefResponse> response;
  MeasureRound(
      state, 1, bareParse, [&] { response = calls.Make(); },
      [&] {
        benchmark::DoNotOptimize(response->GetServiceLayerResponse()->GetResponseMessage().data());
      });
}

/// Builds and releases 100,000 records out of one reply against the same by the hundred.
void RecordsOfOneReplyAgainstHundreds(benchmark::State& state) {
  std::string const large = RecordValuesReply(100000);
  std::string const small = RecordValuesReply(100);
  auto const read = [&state](std::string const& reply) {
    SmartPtr<GetRecordAttributesByRefResponse> response;
    bool const isRead = lumo::ReadWhileParsed(
        reply, "GetRecordAttributesByRefResponse", [&response](XmlNode<char> const* node) {
          response = GetRecordAttributesByRefResponse::CreateOne(node);
        });
    if (!isRead) state.SkipWithError("the reply was not read");
  };
  MeasureRound(
      state, 1,
      [&] {
        for (int i = 0; i < 1000; ++i) read(small);
      },
      [&] { read(large); });
}

}  // namespace

BENCHMARK(WholeReply<Records>)
    ->Name("WholeReply")
    ->Arg(100)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(WholeReply<Search>)
    ->Name("WholeSearchResults")
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(WholeReply<Tree>)->Name("WholeTree")->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(WholeReply<Tables>)->Name("WholeTableList")->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(Building)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Releasing)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Copying)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReplyText)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(RecordsOfOneReplyAgainstHundreds)->Unit(benchmark::kMillisecond);
