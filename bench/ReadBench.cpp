#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <rapidxml/rapidxml.hpp>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "bench/Replies.h"
#include "lumo/LumoServiceLayer.h"

namespace {

/// Parses the reply with bare RapidXML in turn with parsing it and `build(element)`, where element
/// is the only child of the body. What `build` returns outlives the tree, as in a call.
template <class Build>
void TypedAgainstBareParse(benchmark::State& state, std::string const& reply, Build build) {
  std::vector<char> bytes(reply.size() + 1);
  auto const bareDocument = std::make_unique<rapidxml::xml_document<char>>();
  auto const bareParse = [&] {
    std::memcpy(bytes.data(), reply.c_str(), bytes.size());
    bareDocument->clear();
    bareDocument->parse<rapidxml::parse_default>(bytes.data());
  };
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

void TypedTableListAgainstBareParse(benchmark::State& state) {
  TypedAgainstBareParse(state, TableListReply(static_cast<int>(state.range(0))),
                        Typed<GetTablesResponse>);
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

BENCHMARK(TypedTableListAgainstBareParse)->Arg(10)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(ValuesAgainstBareParse)->Arg(100)->Arg(10000)->Unit(benchmark::kMillisecond);
