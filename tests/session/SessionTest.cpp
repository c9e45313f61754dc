#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/support/RawServer.h"
#include "tests/support/Session.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

/// Transport that answers by itself and keeps what it was asked.
class FakeTransport : public HttpTransport {
 public:
  int Send(std::shared_ptr<HttpOptions const> const& options, std::string const& path,
           eHttpVerb verb, HttpMessage& message) override {
    m_options = options;
    m_calls.push_back(std::to_string(verb) + " " + path);
    message.SetResponse(200, {}, Envelope("<GetTablesResponse/>"));
    return 0;
  }
  std::shared_ptr<HttpOptions const> m_options;
  std::vector<std::string> m_calls;
};

/// Lets clients made during a test use the fake.
class WithFakeTransport : public testing::Test {
 protected:
  void SetUp() override {
    HttpClient::SetTransportFactory([this] { return m_transport; });
  }
  void TearDown() override { HttpClient::SetTransportFactory(nullptr); }
  HttpOptions const& Options(LumoSession& session) {
    session.ConnectionIsValid(nullptr);
    return *m_transport->m_options;
  }
  SmartPtr<FakeTransport> m_transport{new FakeTransport()};
};

/// Asks for tables and returns the outcome.
SmartPtr<ServiceLayerResponse> OutcomeOf(GetTablesImpl& operation) {
  GetTablesResponse response;
  operation.RequestTables(TablesOf("K"), &response);
  return response.GetServiceLayerResponse();
}

class CountingModule : public ILumoSLAuthModule {
 public:
  // NOLINTNEXTLINE(performance-unnecessary-value-param): the interface's signature
  void ApplyAuthentication(SmartPtr<HttpClient> client) override { m_applied += client ? 1 : 0; }
  int m_applied = 0;
};

}  // namespace

TEST_F(WithFakeTransport, PreparesTheClientOfANewSession) {
  auto const session = LumoSession::CreateOne("http://x/y/", LumoSLAuth_Annonymous::CreateOne());
  HttpOptions const& options = Options(*session);
  EXPECT_EQ(options.baseUrl, "http://x/y");
  EXPECT_THAT((std::vector<int>{options.resolveTimeout, options.connectTimeout, options.sendTimeout,
                                options.receiveTimeout}),
              ElementsAre(10000, 600000, 300000, 300000));
  EXPECT_FALSE(options.hasCredentials || options.autologon);
  LumoServiceLayerServices services(session);
  services.SetTimeouts(1, 0, -5, 4);
  HttpOptions const& changed = Options(*session);
  EXPECT_THAT((std::vector<int>{changed.resolveTimeout, changed.connectTimeout, changed.sendTimeout,
                                changed.receiveTimeout}),
              ElementsAre(1, 0, 0, 4));
  EXPECT_EQ(OutcomeOf(*services.GetBrowseService()->GetGetTablesImpl())->GetResponseCode(), 200);
  EXPECT_THAT(m_transport->m_calls, ElementsAre("4 /", "4 /", "6 /Browse.svc"));
}

TEST_F(WithFakeTransport, EndsAsNoReplyWhenThereIsNone) {
  m_transport = nullptr;
  auto const services = Connect("http://x", nullptr, LumoSLAuth_Authenticated::CreateOne("u", "p"));
  auto const session = services->GetSession();
  EXPECT_EQ(session->HttpClientPtr(), nullptr);
  services->SetTimeouts(1, 2, 3, 4);
  session->ApplyAuthenticationModule(LumoSLAuth_AutoLoginAuth::CreateOne());
  eHttpStatusCode status = eHttpStatusCode_Processing;
  EXPECT_FALSE(session->ConnectionIsValid(&status));
  EXPECT_EQ(status, eHttpStatusCode_Processing);
  auto const outcome = OutcomeOf(*services->GetBrowseService()->GetGetTablesImpl());
  EXPECT_EQ(outcome->GetResponseCode(), 500);
  EXPECT_EQ(outcome->GetResponseMessage(), "GetTables FAILED");
}

TEST_F(WithFakeTransport, AppliesAModuleOnceAndKeepsTheEffectOfTheOldOne) {
  SmartPtr<CountingModule> const module(new CountingModule());
  auto const session = LumoSession::CreateOne("http://x", module);
  session->ApplyAuthenticationModule(module);
  EXPECT_EQ(module->m_applied, 1);
  session->ApplyAuthenticationModule(LumoSLAuth_AutoLoginAuth::CreateOne());
  session->ApplyAuthenticationModule(nullptr);
  EXPECT_EQ(session->GetAuthenticationModule(), nullptr);
  EXPECT_TRUE(Options(*session).autologon);
  session->ApplyAuthenticationModule(LumoSLAuth_Authenticated::CreateOne("D", "u\xC3\xA9", "p"));
  HttpOptions const& options = Options(*session);
  EXPECT_TRUE(options.autologon && options.hasCredentials);
  EXPECT_EQ(options.user, "D\\u\xC3\xA9");
  EXPECT_EQ(options.password, "p");
}

TEST(Session, JoinsDomainAndUser) {
  LumoSLAuth_Authenticated module("u", "p");
  EXPECT_EQ(module.GetUserName(), "u");
  module.InitialiseCredentials("", "v", "p");
  EXPECT_EQ(module.GetUserName(), "uv");
  module.InitialiseCredentials("D", "w", "p");
  EXPECT_EQ(module.GetUserName(), "D\\w");
}

TEST(Session, RefusesNullMessages) {
  auto const session = LumoSession::CreateOne("http://x", nullptr);
  session->FillRequestHeaders(nullptr, "action");
  GetTablesImpl(session.get()).BuildRequest(nullptr, TablesOf("K"));
  EXPECT_EQ(LumoSLAuth_Authenticated::CreateOne()->GetUserName(), "");
}

TEST(Session, DropsInvalidBytesOfTheUrl) {
  auto const session = LumoSession::CreateOne("http://\xFFx\xC3\xA9/", nullptr);
  EXPECT_EQ(session->GetUrl(), L"http://x\u00E9/");
}

TEST(Session, ProbesTheRootBelowItsUrl) {
  RawServer const server(Replies({HttpReply("200 OK", ""), HttpReply("404 No", "")}));
  auto const session = LumoSession::CreateOne(server.Url() + "/base", nullptr);
  session->SetApplicationName("not sent");
  eHttpStatusCode status = eHttpStatusCode_Unknown;
  EXPECT_TRUE(session->ConnectionIsValid(&status));
  EXPECT_EQ(status, eHttpStatusCode_OK);
  EXPECT_FALSE(session->ConnectionIsValid(&status));
  EXPECT_EQ(status, eHttpStatusCode_NotFound);
  EXPECT_FALSE(session->ConnectionIsValid(nullptr));
  EXPECT_EQ(server.Requests()[0],
            "GET /base/ HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.Port()) + "\r\n\r\n");
  auto const unreachable = LumoSession::CreateOne("http://127.0.0.1:1", nullptr);
  EXPECT_FALSE(unreachable->ConnectionIsValid(&status));
  EXPECT_EQ(status, 0);
}

TEST(Services, HaveTheirNamespaces) {
  std::string const base = LumoSession::GetVendorNamespaceBase() + "16/01/";
  EXPECT_EQ(BrowseService::GetBrowseDefinition("16/01"), base + "Browse");
  EXPECT_EQ(SearchService::GetSearchDefinition("16/01"), base + "Search");
  EXPECT_EQ(DataExportService::GetDataExportDefinition("16/01"), base + "DataExport");
  EXPECT_EQ(DataImportService::GetDataImportDefinition("16/01"), base + "DataImport");
  EXPECT_EQ(EngineeringDataService::GetEngineeringDataDefinition("16/01"),
            base + "EngineeringData");
  EXPECT_EQ(LumoSession::CreateOne("", nullptr)->GetZorandBaseTypeDefinition(),
            base + "ZorandBaseTypes");
}

TEST(Services, CopyTheNamespaceOfTheirSession) {
  RawServer const server(Replies({HttpReply("200 OK", kTablesReply)}));
  auto const session = LumoSession::CreateOne(server.Url(), nullptr);
  session->SetVendorNamespaceBase("urn:v&w");
  EXPECT_EQ(session->GetNamespaceBase(), "urn:v&w/");
  EXPECT_EQ(session->GetZorandBaseTypeDefinition(), "urn:v&w/16/01/ZorandBaseTypes");
  LumoServiceLayerServices const services(session);
  session->SetVendorNamespaceBase("");
  EXPECT_EQ(session->GetNamespaceBase(), LumoSession::GetVendorNamespaceBase());
  EXPECT_TRUE(OutcomeOf(*services.GetBrowseService()->GetGetTablesImpl())->Succeeded());
  EXPECT_THAT(server.Requests()[0],
              AllOf(HasSubstr("\r\nSOAPAction: urn:v&w/16/01/Browse/GetTablesRequest\r\n"),
                    HasSubstr(" xmlns:zbt=\"urn:v&amp;w/16/01/ZorandBaseTypes\""),
                    HasSubstr(" xmlns:header=\"urn:v&amp;w/headers\""),
                    HasSubstr(" xmlns:brow=\"urn:v&amp;w/16/01/Browse\"")));
}

TEST(Services, OutliveTheFacadeAsLongAsTheyAreHeld) {
  auto services = LumoServiceLayerServices::CreateOne("http://127.0.0.1:1", nullptr);
  auto const session = services->GetSession();
  auto const operation = services->GetBrowseService()->GetGetTablesImpl();
  EXPECT_NE(services->GetSearchService(), nullptr);
  EXPECT_NE(services->GetDataExportService(), nullptr);
  EXPECT_NE(services->GetDataImportService(), nullptr);
  EXPECT_NE(services->GetEngineeringDataService(), nullptr);
  services.Reset();
  EXPECT_EQ(OutcomeOf(*operation)->GetResponseCode(), 500);
}

TEST(Operations, HaveRootElementsEvenWhereNoneIsSent) {
  auto const services = LumoServiceLayerServices::CreateOne("", nullptr);
  auto const browse = services->GetBrowseService();
  EXPECT_EQ(browse->GetGetDatabaseImpl()->GetRootTagName(), "GetDatabasesRequest");
  EXPECT_EQ(browse->GetGetCurrenciesImpl()->GetRootTagName(), "GetCurrenciesRequest");
}
