#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "bench/BareParse.h"
#include "bench/Ratio.h"
#include "bench/Replies.h"
#include "lumo/LumoServiceLayer.h"

// What parses a reply whole: operations with a `ProcessResponse` of their own, and unusual replies.

namespace {

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

}  // namespace

BENCHMARK(TypedReading<GetTablesResponse, TableListReply>)
    ->Name("TreeToTableList")
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ValuesAgainstBareParse)->Name("TreeToValues")->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(TypedReading<GetRecordAttributesByRefResponse, RecordValuesReply>)
    ->Name("TreeToRecords")
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);
