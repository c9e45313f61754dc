#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "tests/support/ParseCounter.h"
#include "tests/support/Session.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// Transport that gives the same answer to every request.
class Answer : public HttpTransport {
 public:
  Answer(int status, std::string const& body) : m_status(status), m_body(body) {}
  int Send(std::shared_ptr<HttpOptions const> const& /*options*/, std::string const& /*path*/,
           eHttpVerb /*verb*/, HttpMessage& message) override {
    if (m_status == 0) {
      message.SetTransportError(m_body);
      return 1;
    }
    message.SetResponse(m_status, {}, std::string(m_body));
    return 0;
  }

 private:
  int m_status;
  std::string m_body;
};

/// A server that gives the same answer to every request; status 0 stands for no reply.
class Server {
 public:
  Server(int status, std::string const& body, ILogger* logger = nullptr) {
    SmartPtr<HttpTransport> answer(new Answer(status, body));
    HttpClient::SetTransportFactory([answer] { return answer; });
    m_services = Connect("http://x", logger);
    HttpClient::SetTransportFactory(nullptr);
  }
  LumoServiceLayerServices* operator->() const { return m_services.get(); }
  SmartPtr<ServiceLayerResponse> AskForTables() const {
    GetTablesResponse response;
    m_services->GetBrowseService()->GetGetTablesImpl()->RequestTables(TablesOf("K"), &response);
    return response.GetServiceLayerResponse();
  }

 private:
  SmartPtr<LumoServiceLayerServices> m_services;
};

struct Row {
  char const* name;
  int status;
  std::string body;
  CallOutcomes::eCallOutcome outcome;
  std::string error;
  std::string faultCode{};
  std::string faultText{};
  std::string faultDetail{};
  std::string errorMessage{};
};

void PrintTo(Row const& row, std::ostream* out) { *out << row.name; }

std::string const kFault = Envelope(
    "<s:Fault><faultcode>s:Client</faultcode><faultstring>No &lt;such&gt;\n  key</faultstring>"
    "<detail><e:Why xmlns:e=\"u\">a &amp; b</e:Why><More/></detail></s:Fault>");
std::string const kForeignFault =
    "<soap:Envelope><soap:Header/><soap:Body><soap:Fault><faultcode>soap:Server</faultcode>"
    "</soap:Fault></soap:Body></soap:Envelope>";
std::string const kPage = "<html>\n<body>Sign in</body></html>";
std::string const kSpeech = "\xC3\xA9 " + std::string(76, '-') + " \xC3\xA9\xC3\xA9";

std::vector<Row> Rows() {
  std::string const detail = "<e:Why xmlns:e=\"u\">a &amp; b</e:Why><More/>";
  std::string const fault = "GetTables: the server reports a fault: ";
  return {
      {"Success", 200, kTablesReply, CallOutcomes::Success, ""},
      {"Fault", 500, kFault, CallOutcomes::Fault, fault + "No <such> key", "s:Client",
       "No <such>\n  key", detail, "No <such>\n  key"},
      {"FaultInSuccess", 200, kFault, CallOutcomes::FaultInSuccess, fault + "No <such> key",
       "s:Client", "No <such>\n  key", detail},
      {"ForeignFault", 503, kForeignFault, CallOutcomes::Fault, fault + "soap:Server",
       "soap:Server"},
      {"FaultOfNothing", 500, Envelope("<s:Fault><faultstring>&#0;</faultstring></s:Fault>"),
       CallOutcomes::Fault, fault + "status 500", "", std::string(1, '\0'), "",
       std::string(1, '\0')},
      {"FaultWithAZero", 500, Envelope("<s:Fault><faultstring>a&#0;b</faultstring></s:Fault>"),
       CallOutcomes::Fault, fault + "a b", "", std::string("a\0b", 3), "", std::string("a\0b", 3)},
      {"Page404", 404, kPage, CallOutcomes::OtherStatus,
       "GetTables: the server answers with status 404"},
      {"NoXml502", 502, "<br>", CallOutcomes::OtherStatus,
       "GetTables: the server answers with status 502"},
      {"Page200", 200, kPage, CallOutcomes::NotUnderstood,
       "GetTables: the reply has no GetTablesResponse: <html> <body>Sign in</body></html>"},
      {"OtherPrefix", 200, "<Envelope><Body><GetTablesResponse/></Body></Envelope>",
       CallOutcomes::NotUnderstood,
       "GetTables: the reply has no GetTablesResponse: "
       "<Envelope><Body><GetTablesResponse/></Body></Envelope>"},
      {"NoXml200", 200, "<html><br></html>", CallOutcomes::NotUnderstood,
       "GetTables: the reply is not well-formed XML, unexpected end of data: <html><br></html>"},
      {"Text200", 200, kSpeech, CallOutcomes::NotUnderstood,
       "GetTables: the reply is not well-formed XML, expected <: " + kSpeech.substr(0, 79)},
      {"Empty200", 200, "", CallOutcomes::NotUnderstood, "GetTables: the reply is empty"},
      {"Refused", 0, "Connection\nrefused", CallOutcomes::NoReply,
       "GetTables: no reply: Connection refused"},
      {"Nothing", 0, "", CallOutcomes::NoReply, "GetTables: no reply"},
  };
}

class OutcomeTest : public testing::TestWithParam<Row> {};

}  // namespace

TEST_P(OutcomeTest, IsToldOnceAndParsedOnce) {
  Row const& row = GetParam();
  for (bool const isLogged : {false, true}) {
    KeepingLogger logger;
    int const before = ParsedTexts();
    auto const outcome = Server(row.status, row.body, isLogged ? &logger : nullptr).AskForTables();
    EXPECT_EQ(outcome->GetOutcome(), row.outcome);
    EXPECT_EQ(outcome->Succeeded(), row.error.empty());
    EXPECT_EQ(outcome->ErrorText(), row.error);
    EXPECT_EQ(outcome->GetFaultCode(), row.faultCode);
    EXPECT_EQ(outcome->GetFaultText(), row.faultText);
    EXPECT_EQ(outcome->GetFaultDetail(), row.faultDetail);
    EXPECT_EQ(outcome->GetErrorMessage(), row.errorMessage);
    // What succeeds is read while it is parsed. The log line of a failed call shows the request,
    // which is printed from its bytes without a tree.
    int const replies = row.status == 0 || row.error.empty() ? 0 : 1;
    EXPECT_EQ(ParsedTexts() - before, replies);
  }
}

INSTANTIATE_TEST_SUITE_P(All, OutcomeTest, testing::ValuesIn(Rows()),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(Outcome, TellsOfAValueThatDoesNotConvert) {
  Server const server(
      200, Envelope("<GetTablesResponse><tableDetails><table><table><tableIdentity>many"
                    "</tableIdentity></table></table></tableDetails></GetTablesResponse>"));
  GetTablesResponse response;
  EXPECT_THROW(
      server->GetBrowseService()->GetGetTablesImpl()->RequestTables(TablesOf("K"), &response),
      std::invalid_argument);
  auto const outcome = response.GetServiceLayerResponse();
  EXPECT_EQ(outcome->GetOutcome(), CallOutcomes::NotUnderstood);
  EXPECT_THAT(outcome->ErrorText(), HasSubstr("GetTables: a value in the reply does not convert"));
}

TEST(Outcome, IsThereWithoutACall) {
  EXPECT_EQ(ServiceLayerResponse().ErrorText(), "no call was made");
  EXPECT_TRUE(ServiceLayerResponse(kTablesReply, 200).Succeeded());
  EXPECT_EQ(ServiceLayerResponse(kFault, 200).GetOutcome(), CallOutcomes::FaultInSuccess);
  EXPECT_EQ(ServiceLayerResponse(kFault, 500).GetErrorMessage(), "No <such>\n  key");
  EXPECT_EQ(ServiceLayerResponse("<br>", 200).GetOutcome(), CallOutcomes::NotUnderstood);
  EXPECT_EQ(ServiceLayerResponse("<br>", 404).ErrorText(), "status 404");
}

TEST(Outcome, TellsOfValuesThatAreLostWithoutStartUp) {
  std::string const values =
      "<attributeValue><AttributeName>A</AttributeName><z:PointDataValue/></attributeValue>"
      "<attributeValue><AttributeName>B</AttributeName></attributeValue>"
      "<attributeValue><AttributeName>C</AttributeName><NewDataValue/></attributeValue>";
  KeepingLogger logger;
  Server const server(
      200,
      Envelope("<GetRecordAttributesByRefResponse><results><recordData><attributeValues>" + values +
               "</attributeValues></recordData></results>"
               "</GetRecordAttributesByRefResponse>"),
      &logger);
  auto const ask = [&server] {
    GetRecordAttributesByRefResponse response;
    server->GetDataExportService()->GetRecordAttributesByRefImplPtr()->RequestRecordAttributesByRef(
        GetRecordAttributesByRefRequest::CreateOne(), &response);
    EXPECT_THAT(response.AccessRecordData(), SizeIs(1));
    return response.GetServiceLayerResponse();
  };
  EXPECT_TRUE(ask()->Succeeded());  // a type that nobody knows is no concern of start-up
  EXPECT_THAT(logger.Errors(), IsEmpty());

  kpxtkLumoServiceLayer::Shutdown();
  std::string const error =
      "GetRecordAttributesByRef: kpxtkLumoServiceLayer::Initialize has not run, so that values of "
      "the reply are lost: 2";
  auto const outcome = ask();
  EXPECT_EQ(outcome->GetOutcome(), CallOutcomes::NotInitialized);
  EXPECT_EQ(outcome->ErrorText(), error);
  EXPECT_EQ(outcome->GetResponseCode(), 200);
  EXPECT_THAT(logger.Errors(), ElementsAre(error));

  AttributeValue::RegisterTypes();  // names, but no factories
  EXPECT_THAT(ask()->ErrorText(), HasSubstr("lost: 1"));
  kpxtkLumoServiceLayer::Initialize();
  EXPECT_TRUE(ask()->Succeeded());
}
