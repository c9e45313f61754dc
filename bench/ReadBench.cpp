#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <rapidxml/rapidxml.hpp>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "lumo/LumoServiceLayer.h"

namespace {

/// Reply to `GetTables` as a server writes it: each table with ten attributes by name.
std::string TableListReply(int tables) {
  std::string reply =
      R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body>)"
      R"(<GetTablesResponse xmlns="http://www.example.com/lumo/16/01/Browse" )"
      R"(xmlns:b="http://www.example.com/lumo/16/01/ZorandBaseTypes"><tableDetails>)";
  for (int table = 1; table <= tables; ++table) {
    std::string const number = std::to_string(table);
    reply += "<table><b:table><b:tableIdentity>" + number + "</b:tableIdentity><b:tableGUID>" +
             "7c9e6679-7425-40de-944b-e07fc1f90ae7</b:tableGUID><b:tableName>Materials " + number +
             "</b:tableName><b:dbKey>ENG_MATERIALS</b:dbKey></b:table><b:attributeReferences>";
    for (int attribute = 0; attribute < 10; ++attribute) {
      reply += "<b:attribute><b:dbKey>ENG_MATERIALS</b:dbKey><b:attributeIdentity>" +
               std::to_string(table * 10 + attribute) +
               "</b:attributeIdentity><b:name b:isStandard=\"false\"><b:attributeName>Thermal "
               "conductivity</b:attributeName></b:name></b:attribute>";
    }
    reply +=
        "</b:attributeReferences><b:tableFilters><b:tableFilter>MaterialsTablesOnly"
        "</b:tableFilter></b:tableFilters></table>";
  }
  return reply + "</tableDetails></GetTablesResponse></s:Body></s:Envelope>";
}

void TypedTableListAgainstBareParse(benchmark::State& state) {
  std::string const reply = TableListReply(static_cast<int>(state.range(0)));
  std::vector<char> bytes(reply.size() + 1);
  auto const bareDocument = std::make_unique<rapidxml::xml_document<char>>();
  auto const bareParse = [&] {
    std::memcpy(bytes.data(), reply.c_str(), bytes.size());
    bareDocument->clear();
    bareDocument->parse<rapidxml::parse_default>(bytes.data());
  };
  auto const typedRead = [&] {
    SmartPtr<GetTablesResponse> response;
    {
      auto const document = std::make_unique<XmlDocument<char>>();
      XMLUtilites::Parse(reply.data(), reply.data() + reply.size(), *document);
      auto* const body = document->first_node("s:Envelope")->first_node("s:Body");
      response = GetTablesResponse::CreateOne(XMLUtilites::GetNode("GetTablesResponse", body));
    }
    benchmark::DoNotOptimize(response->AccessTableDetails().size());
  };
  MeasureRound(state, 1, bareParse, typedRead);
  state.counters["reply_MB"] = static_cast<double>(reply.size()) / 1e6;
}

}  // namespace

BENCHMARK(TypedTableListAgainstBareParse)->Arg(10)->Arg(2000)->Unit(benchmark::kMillisecond);
