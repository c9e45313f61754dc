#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <rapidxml/rapidxml.hpp>
#include <string>
#include <vector>

#include "bench/InstantTransport.h"
#include "bench/Ratio.h"
#include "bench/Replies.h"
#include "lumo/LumoServiceLayer.h"

namespace {

/// Copies the text, which the parser changes, and parses it with bare RapidXML.
class BareParse {
 public:
  /// The text must outlive the object.
  explicit BareParse(std::string const& text) : m_text(text), m_bytes(text.size() + 1) {}
  void operator()() {
    std::memcpy(m_bytes.data(), m_text.c_str(), m_bytes.size());
    m_document->parse<rapidxml::parse_default>(m_bytes.data());
    m_document->clear();
  }

 private:
  std::string const& m_text;
  std::vector<char> m_bytes;
  std::unique_ptr<rapidxml::xml_document<char>> m_document =
      std::make_unique<rapidxml::xml_document<char>>();
};

/// Parses the reply with bare RapidXML in turn with parsing it and `build(element)`, where element
/// is the only child of the body. What `build` returns outlives the tree, as in a call.
template <class Build>
void TypedAgainstBareParse(benchmark::State& state, std::string const& reply, Build build) {
  BareParse bareParse(reply);
  auto const typedRead = [&] {
    auto document = std::make_unique<XmlDocument<char>>();
    XMLUtilites::Parse(reply.data(), reply.data() + reply.size(), *document);
    auto const built =
        build(document->first_node("s:Envelope")->first_node("s:Body")->first_node());
    document.reset();
    benchmark::DoNotOptimize(built);
  };
  MeasureRound(state, 1, bareParse, typedRead);
  state.counters["reply_MB"] = static_cast<double>(reply.size()) / 1e6;
}

template <class Response>
SmartPtr<Response> Typed(XmlNode<char> const* element) {
  return Response::CreateOne(element);
}

template <class Response, std::string (*Reply)(int)>
void TypedReading(benchmark::State& state) {
  TypedAgainstBareParse(state, Reply(static_cast<int>(state.range(0))), Typed<Response>);
}

/// The values alone, without the records around them.
void ValuesAgainstBareParse(benchmark::State& state) {
  auto const build = [](XmlNode<char> const* element) {
    std::vector<SmartPtr<AttributeValue>> values;
    lumo::NodeReader(element).In("results").ForEach("recordData", [&](XmlNode<char> const& record) {
      lumo::NodeReader(&record).In("attributeValues").Children("attributeValue", values);
    });
    return values;
  };
  TypedAgainstBareParse(state, RecordValuesReply(static_cast<int>(state.range(0))), build);
}

/// A call from the reply's bytes on, which a transport inside the process hands out.
void WholeReply(benchmark::State& state) {
  std::string const reply = RecordValuesReply(static_cast<int>(state.range(0)));
  HttpClient::SetTransportFactory([&reply] { return InstantTransport::Of(reply); });
  LumoServiceLayerServices const services(LumoSession::CreateOne("http://localhost", nullptr));
  HttpClient::SetTransportFactory(nullptr);
  auto const operation = services.GetDataExportService()->GetRecordAttributesByRefImplPtr();
  auto const request = GetRecordAttributesByRefRequest::CreateOne();
  BareParse bareParse(reply);
  MeasureRound(state, 1, bareParse, [&] {
    GetRecordAttributesByRefResponse response;
    operation->RequestRecordAttributesByRef(request, &response);
    if (response.AccessRecordData().empty()) state.SkipWithError("the call failed");
  });
}

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

BENCHMARK(TypedReading<GetTablesResponse, TableListReply>)
    ->Name("TableList")
    ->Arg(10)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ValuesAgainstBareParse)->Name("Values")->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(TypedReading<GetRecordAttributesByRefResponse, RecordValuesReply>)
    ->Name("Records")
    ->Arg(100)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(WholeReply)->Arg(100)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(TypedReading<SimpleTextSearchResponse, SearchReply>)
    ->Name("SearchResults")
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(TypedReading<GetChildNodesResponse, TreeReply>)
    ->Name("Tree")
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(RequestWriting)->Arg(10000)->Unit(benchmark::kMillisecond);
