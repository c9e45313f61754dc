// Holds the sandbox to what it promises, through the client and with requests that the client would
// never send. The server's address is the last argument.

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/sandbox/Sandbox.h"

using testing::ElementsAre;
using testing::Gt;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

GetTablesResponse const& TablesBy(SmartPtr<GetTables> const& request, GetTablesResponse& response) {
  Browse()->GetGetTablesImpl()->RequestTables(request, &response);
  EXPECT_EQ(response.GetServiceLayerResponse()->GetErrorMessage(), "");
  return response;
}

std::vector<std::string> NamesBy(SmartPtr<GetSubsets> const& request) {
  GetSubsetsResponse response;
  Browse()->GetGetSubsetsImpl()->GetSubsets(request, &response);
  EXPECT_EQ(response.GetServiceLayerResponse()->GetErrorMessage(), "");
  std::vector<std::string> names;
  for (auto const& subset : response.AccessSubsetDetails()) names.push_back(subset->GetName());
  return names;
}

SmartPtr<SubsetReference> SubsetOf(std::string const& dbKey, std::string const& name) {
  auto subset = SubsetReference::CreateOne();
  subset->SetDBKey(dbKey);
  subset->SetName(name);
  return subset;
}

/// What the server says to this body, sent with the headers of GetTables.
std::string FaultFor(std::string const& body) {
  auto const session = LumoSession::CreateOne(serverUrl, nullptr);
  GetTablesImpl const operation(session.get());
  auto const message = operation.BuildRequestHandle(nullptr);
  message->GetRequestBuffer()->SetMessage(body.data(), body.size());
  session->HttpClientPtr()->SendRequest(L"/Browse.svc", eHttpVerb_Post, message);
  EXPECT_EQ(message->GetStatusCode(), 500);
  return ServiceLayerResponse(message->GetResponseBuffer()->GetBytes(), 500).GetErrorMessage();
}

/// The request that the client sends for the tables of a database.
std::string GoodRequest() {
  auto const session = LumoSession::CreateOne(serverUrl, nullptr);
  auto const request = GetTables::CreateOne();
  request->SetDBKey("ELEMENTS");
  request->AddAttributeSelector(GetTables::MetaAttributes);
  return GetTablesImpl(session.get()).BuildRequestHandle(request)->GetRequestBuffer()->GetBytes();
}

std::string Changed(std::string const& from, std::string const& to) {
  std::string text = GoodRequest();
  std::size_t const at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

}  // namespace

TEST(Sandbox, HonoursFilterAndSelectors) {
  auto const request = GetTables::CreateOne();
  request->SetDBKey("ENG_MATERIALS");
  GetTablesResponse all;
  EXPECT_THAT(TablesBy(request, all).AccessTableDetails(), SizeIs(4));
  EXPECT_THAT(all.AccessTableDetails()[0]->AccessStandardAttributeReferences(), IsEmpty());

  request->SetTableFilter(TableFilters::MaterialsTablesOnly);
  request->SetAttributeSelectors({GetTables::MetaAttributes, GetTables::StandardAttributes});
  GetTablesResponse materials;
  ASSERT_THAT(TablesBy(request, materials).AccessTableDetails(), SizeIs(1));
  auto const& table = *materials.AccessTableDetails()[0];
  EXPECT_THAT(table.AccessTableFilters(),
              ElementsAre(TableFilters::MaterialsTablesOnly, TableFilters::UniverseTablesOnly));
  ASSERT_THAT(table.AccessAttributeReferences(), SizeIs(2));
  EXPECT_EQ(table.AccessAttributeReferences()[0]->GetName(), "Density: source");
  ASSERT_THAT(table.AccessStandardAttributeReferences(), SizeIs(Gt(5)));
  EXPECT_TRUE(table.AccessStandardAttributeReferences()[0]->GetIsStandardName());
}

TEST(Sandbox, FindsSubsetsByTableIdentityAndName) {
  auto const table = TableReference::CreateOne();
  table->SetDBKey("ENG_MATERIALS");
  table->SetTableName("References");
  auto const byTable = GetSubsets::CreateOne();
  byTable->SetTable(table);
  EXPECT_THAT(NamesBy(byTable), ElementsAre("All references", "Standards"));

  auto const bySubset = GetSubsets::CreateOne();
  auto const first = SubsetReference::CreateOne();
  first->SetDBKey("ENG_MATERIALS");
  first->SetSubsetIdentity(1);
  bySubset->AddSubsetRefernece(first);
  auto const named = SubsetOf("ELEMENTS", "Metalloids");
  named->SetPartialTableReference(PartialTableReference::CreateOneFromTableName("Elements"));
  bySubset->AddSubsetRefernece(named);
  EXPECT_THAT(NamesBy(bySubset), ElementsAre("All materials", "Metalloids"));
}

TEST(Sandbox, SaysWhichSubsetOrTableIsUnknown) {
  auto const table = TableReference::CreateOne();
  table->SetDBKey("ELEMENTS");
  table->SetTableID(99);
  std::vector<std::pair<SmartPtr<GetSubsets>, std::string>> const requests = {
      {GetSubsets::CreateOne(),
       "<brow:GetSubsets> must hold <brow:table> or <zbt:subsetReferences>"},
      {GetSubsets::CreateOne(), "there is no table with identity 99 in \"ELEMENTS\""},
      {GetSubsets::CreateOne(), "there is no subset \"Gold\" in \"ELEMENTS\""},
      {GetSubsets::CreateOne(), "there is no database with the key \"GOLD\""},
  };
  requests[1].first->SetTable(table);
  requests[2].first->AddSubsetRefernece(SubsetOf("ELEMENTS", "Gold"));
  requests[3].first->AddSubsetRefernece(SubsetOf("GOLD", "Gold"));
  for (auto const& [request, fault] : requests) {
    GetSubsetsResponse response;
    Browse()->GetGetSubsetsImpl()->GetSubsets(request, &response);
    EXPECT_EQ(response.GetServiceLayerResponse()->GetResponseCode(), 500);
    EXPECT_EQ(response.GetServiceLayerResponse()->GetErrorMessage(), fault);
  }
}

TEST(Sandbox, RefusesWhatTheClientMustNotSend) {
  std::string const base = LumoSession::GetVendorNamespaceBase();
  for (auto const& [body, part] : std::vector<std::pair<std::string, std::string>>{
           {"", "declaration is missing"},
           {Changed("</soapenv:Envelope>", ""), "not XML"},
           {Changed("<?xml version=\"1.0\" encoding=\"UTF-8\"?>", ""), "declaration is missing"},
           {Changed("UTF-8", "UTF-16"), "encoding=\"UTF-8\""},
           {Changed("xmlns:xsi", "xmlns:xs"), "xmlns:xsi"},
           {Changed(base + "16/01/Browse", base + "15/01/Browse"), "xmlns:brow"},
           {Changed("<soapenv:Header/>", ""), "<soapenv:Header>"},
           {Changed("<soapenv:Header/>", "<soapenv:Header><header:other/></soapenv:Header>"),
            "<header:other> must not stand here"},
           {Changed("<brow:dbKey>ELEMENTS</brow:dbKey>", "<zbt:dbKey>ELEMENTS</zbt:dbKey>"),
            "must hold <brow:dbKey> here, but holds <zbt:dbKey>"},
           {Changed("</brow:attributeSelectors>", "</brow:attributeSelectors><brow:dbKey/>"),
            "<brow:dbKey> must not stand here"},
           {Changed("MetaAttributes", "AllAttributes"), "does not know the word \"AllAttributes\""},
           {Changed(">ELEMENTS<", "><!-- x -->ELEMENTS<"), "no comment"},
           {Changed("ELEMENTS", "A & B"), "bare \"&\""},
           {Changed("ELEMENTS", "\xFF"), "not UTF-8"},
           {Changed(">ELEMENTS<", "><b/><"), "must hold text only"},
           {Changed("</soapenv:Body>", "<brow:GetTables/></soapenv:Body>"), "must not stand here"},
       }) {
    EXPECT_THAT(FaultFor(body), HasSubstr(part)) << body;
  }
}

TEST(Sandbox, AnswersTheProbe) {
  EXPECT_TRUE(LumoSession::CreateOne(serverUrl, nullptr)->ConnectionIsValid(nullptr));
}
