// Log-on, faults on demand and stopping, with servers inside this program.

#include <arpa/inet.h>
#include <curl/curl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <sstream>

#include "sandbox/http/Server.h"
#include "sandbox/seed/Seed.h"
#include "tests/sandbox/Sandbox.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace {

/// A server of its own with the minimal content.
class OwnServer {
 public:
  explicit OwnServer(sandbox::ServerOptions const& options = {}, int port = 0)
      : m_store(sandbox::OpenStore(":memory:")),
        m_server(m_store, options),
        m_port(m_server.Start(port)) {}
  std::string Url() const { return "http://127.0.0.1:" + std::to_string(m_port); }
  int Port() const { return m_port; }
  int Count(std::string const& what) { return m_store.Only("SELECT count(*) FROM " + what).Int(0); }
  /// Stops, and says how long that took.
  std::chrono::duration<double> Stop() {
    auto const begin = std::chrono::steady_clock::now();
    m_server.Stop();
    return std::chrono::steady_clock::now() - begin;
  }

 private:
  sandbox::Store m_store;
  sandbox::Server m_server;
  int m_port;
};

sandbox::ServerOptions WithLogOn(sandbox::LogOn kind) {
  sandbox::ServerOptions options;
  options.logOn = kind;
  options.user = "ann \"x\"";  // to be escaped in a Digest proof
  options.password = "gr\xC3\xBC\xC3\x9F:e";
  return options;
}

/// A bare client that keeps its connection and log-on.
struct Client {
  struct Reply {
    long status = 0;
    std::string headers;
    std::string body;
  };
  Client() { curl_easy_setopt(easy.get(), CURLOPT_HTTPAUTH, CURLAUTH_DIGEST | CURLAUTH_BASIC); }
  Reply Send(char const* method, std::string const& url, std::string const& body = "") {
    auto const append = +[](char* bytes, std::size_t, std::size_t count, std::string* to) {
      to->append(bytes, count);
      return count;
    };
    Reply reply;
    curl_easy_setopt(easy.get(), CURLOPT_URL, url.c_str());
    if (body.empty()) curl_easy_setopt(easy.get(), CURLOPT_HTTPGET, 1L);
    if (!body.empty()) curl_easy_setopt(easy.get(), CURLOPT_COPYPOSTFIELDS, body.c_str());
    curl_easy_setopt(easy.get(), CURLOPT_CUSTOMREQUEST, method);
    curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, &reply.body);
    curl_easy_setopt(easy.get(), CURLOPT_HEADERFUNCTION, append);
    curl_easy_setopt(easy.get(), CURLOPT_HEADERDATA, &reply.headers);
    EXPECT_EQ(curl_easy_perform(easy.get()), CURLE_OK);
    curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &reply.status);
    return reply;
  }
  std::unique_ptr<CURL, void (*)(CURL*)> easy{curl_easy_init(), curl_easy_cleanup};
};

/// The outcome of GetTables as a client sees it that is new to the server.
struct Outcome {
  explicit Outcome(std::string const& url,
                   SmartPtr<ILumoSLAuthModule> const& auth = LumoSLAuth_Annonymous::CreateOne()) {
    auto const services = LumoServiceLayerServices::CreateOne(url, auth);
    services->SetTimeouts(1000, 1000, 1000, 500);
    auto const request = GetTables::CreateOne();
    request->SetDBKey(kMaterials);
    GetTablesResponse response;
    services->GetBrowseService()->GetGetTablesImpl()->RequestTables(request, &response);
    tables = response.AccessTableDetails().size();
    auto const outcome = response.GetServiceLayerResponse();
    code = outcome->GetResponseCode();
    reply = outcome->GetResponseMessage();
    fault = outcome->GetErrorMessage();
    transportError = outcome->GetTransportError();
  }
  std::size_t tables = 0;
  int code = 0;
  std::string reply;
  std::string fault;
  std::string transportError;
};

}  // namespace

class LogOnTest : public testing::TestWithParam<sandbox::LogOn> {};
INSTANTIATE_TEST_SUITE_P(Kinds, LogOnTest,
                         testing::Values(sandbox::LogOn::Basic, sandbox::LogOn::Digest));

TEST_P(LogOnTest, LetsInWhoKnowsThePassword) {
  sandbox::ServerOptions const options = WithLogOn(GetParam());
  OwnServer const server(options);
  auto const as = [&](std::string const& user, std::string const& password) {
    return Outcome(server.Url(), LumoSLAuth_Authenticated::CreateOne(user, password));
  };
  EXPECT_EQ(as(options.user, options.password).tables, 4U);
  for (Outcome const& refused : {as(options.user, "wrong"), as("bob", options.password),
                                 as(options.user, options.password + "x"), Outcome(server.Url())}) {
    EXPECT_EQ(refused.code, 401);
    EXPECT_EQ(refused.reply + refused.fault + refused.transportError, "");
    EXPECT_EQ(refused.tables, 0U);
  }
}

TEST_P(LogOnTest, ComesBeforeAnythingElse) {
  OwnServer const server(WithLogOn(GetParam()));
  Client client;
  std::string const scheme = GetParam() == sandbox::LogOn::Basic ? "Basic" : "Digest";
  for (char const* const path : {"/", "/data/1/1", "/nowhere", "/control", "/control/faults/x"}) {
    auto const reply = client.Send("GET", server.Url() + path);
    EXPECT_EQ(reply.status, 401) << path;
    EXPECT_THAT(reply.headers,
                HasSubstr("WWW-Authenticate: " + scheme + " realm=\"lumo-sandbox\""));
  }
  // The refused body is not taken for the next request of the connection.
  EXPECT_EQ(client.Send("POST", server.Url() + "/Browse.svc", "GET / HTTP/1.1\r\n\r\n").status,
            401);
  EXPECT_EQ(client.Send("PUT", server.Url() + "/control/faults", "* html").status, 200);
  long connections = 0;
  curl_easy_getinfo(client.easy.get(), CURLINFO_NUM_CONNECTS, &connections);
  EXPECT_EQ(connections, 0);
}

TEST(LogOn, KnowsTheNonceOfAnEarlierRunAsStale) {
  sandbox::ServerOptions options = WithLogOn(sandbox::LogOn::Digest);
  auto first = std::make_unique<OwnServer>(options);
  Client client;
  curl_easy_setopt(client.easy.get(), CURLOPT_USERNAME, options.user.c_str());
  curl_easy_setopt(client.easy.get(), CURLOPT_PASSWORD, options.password.c_str());
  EXPECT_THAT(client.Send("GET", first->Url() + "/?a=b").headers,
              AllOf(HasSubstr("401"), HasSubstr("200"), Not(HasSubstr("stale"))));
  first->Stop();
  OwnServer second(options, first->Port());
  EXPECT_THAT(client.Send("GET", second.Url()).headers,
              AllOf(HasSubstr("200"), HasSubstr("stale=true")));
  second.Stop();
  options.password = "changed";
  OwnServer const third(options, second.Port());
  EXPECT_THAT(client.Send("GET", third.Url()).headers, Not(HasSubstr("stale")));
}

TEST(Faults, AreWhatTheClientSees) {
  OwnServer const server;
  Client control;
  EXPECT_EQ(control
                .Send("PUT", server.Url() + "/control/faults",
                      "GetSubsets fault\n GetTables fault\n* status 503 x2\nGetTables html\n"
                      "GetTables cut 300\nGetTables reset\n\nGetTables malformed\n* stall 1\n")
                .status,
            200);
  Outcome const fault(server.Url());
  EXPECT_EQ(fault.code, 500);
  EXPECT_EQ(fault.fault, "this fault was asked for");
  for (int i = 0; i < 2; ++i) {
    Outcome const status(server.Url());
    EXPECT_EQ(status.code, 503);
    EXPECT_EQ(status.reply + status.fault + status.transportError, "");
  }
  Outcome const html(server.Url());
  EXPECT_EQ(html.code, 200);
  EXPECT_THAT(html.reply, StartsWith("<!DOCTYPE html>"));
  EXPECT_EQ(html.tables, 0U);
  for (char const* const what : {"cut", "reset"}) {
    Outcome const broken(server.Url());
    EXPECT_EQ(broken.code, 500) << what;
    EXPECT_EQ(broken.reply, "GetTables FAILED") << what;
    EXPECT_NE(broken.transportError, "") << what;
  }
  Outcome const malformed(server.Url());
  EXPECT_EQ(malformed.code, 200);
  EXPECT_THAT(malformed.reply, AllOf(HasSubstr("Materials"), HasSubstr("<>")));
  EXPECT_EQ(malformed.tables, 0U);
  Outcome const stalled(server.Url());
  EXPECT_EQ(stalled.code, 500);
  EXPECT_NE(stalled.transportError, "");

  EXPECT_EQ(Outcome(server.Url()).tables, 4U);
  EXPECT_EQ(control.Send("GET", server.Url() + "/control/faults").body, "GetSubsets fault\n");
  control.Send("DELETE", server.Url() + "/control/faults");
  EXPECT_EQ(control.Send("GET", server.Url() + "/control/faults").body, "");
}

TEST(Faults, ComeAgainUntilTheyAreCleared) {
  OwnServer const server;
  Client client;
  std::string const control = server.Url() + "/control/faults";
  auto const statuses = [&](int count) {
    std::vector<long> all;
    for (; count > 0; --count) {
      all.push_back(client.Send("POST", server.Url() + "/Browse.svc", "x").status);
    }
    return all;
  };
  client.Send("PUT", control, "* status 503 every 3\n* status 429 retry-after 2 every 2 x2");
  // The second line sees what the first lets pass; a call that makes no sense is answered by 500.
  EXPECT_THAT(statuses(9), ElementsAre(500, 429, 503, 500, 429, 503, 500, 500, 503));
  EXPECT_EQ(client.Send("GET", control).body, "* status 503 every 3\n");
  EXPECT_EQ(client.Send("PUT", control, "* status 429 retry-after 86400 every 1").body,
            "* status 429 retry-after 86400 every 1\n");
  EXPECT_THAT(client.Send("POST", server.Url() + "/Browse.svc", "x").headers,
              HasSubstr("\r\nRetry-After: 86400\r\n"));
  EXPECT_THAT(statuses(2), ElementsAre(429, 429));
  client.Send("DELETE", control);
  EXPECT_THAT(statuses(1), ElementsAre(500));
}

TEST(Faults, SwallowTheReplyToACallThatIsDone) {
  std::ostringstream log;
  sandbox::ServerOptions options;
  options.log = &log;
  OwnServer server(options);
  Client().Send("PUT", server.Url() + "/control/faults",
                "* swallow\n* reset\n* cut 5\nSetRecordAttributes fault\n");
  auto const services =
      LumoServiceLayerServices::CreateOne(server.Url(), LumoSLAuth_Annonymous::CreateOne());
  auto const request = SetRecordAttributesRequest::CreateOne();
  request->AddImportRecord(
      {new ImportRecord(RecordNamed("Polymers"), "Lost", ImportRecordModes::Create, false)});
  for (int code : {500, 500, 500, 500, 200}) {
    SetRecordAttributesResponse response;
    services->GetDataImportService()->SetRecordAttributesImplPtr()->SetRecordAttributes_Request(
        request, &response);
    EXPECT_EQ(response.GetServiceLayerResponse()->GetResponseCode(), code);
  }
  EXPECT_EQ(server.Count("record WHERE short_name = 'Lost'"), 3);
  server.Stop();
  std::vector<std::string> outcomes;
  std::istringstream lines(log.str());
  for (std::string line; std::getline(lines, line);) {
    std::size_t const name = line.find("Z SetRecordAttributes ");
    if (name == std::string::npos) continue;
    std::size_t const status = name + 22;
    outcomes.push_back(line.substr(status, line.find(' ', status) - status) +
                       line.substr(line.find(" ms, ") + 4));
  }
  // Each connection reports on its own once a reply is out: the last lines may change places.
  EXPECT_THAT(outcomes, UnorderedElementsAre("0 done, swallow", "0 not done, reset",
                                             "200 done, cut 5", "500 not done, fault", "200 done"));
}

TEST(Faults, AreRefusedWhenTheyMakeNoSense) {
  OwnServer const server;
  Client client;
  std::string const url = server.Url() + "/control/faults";
  EXPECT_EQ(client.Send("PUT", url, "* cut 0 x2").body, "* cut 0 x2\n");
  for (auto const& [line, complaint] : std::vector<std::pair<char const*, char const*>>{
           {"GetGold fault", "there is no operation \"GetGold\""},
           {"* explode", "there is no fault \"explode\""},
           {"GetTables", "there is no fault \"\""},
           {"* status", "status takes a number from 200 to 599"},
           {"* status 600", "status takes a number from 200 to 599"},
           {"* stall 5s", "stall takes a number from 0 to 3600"},
           {"* reset every 0", "every takes a number from 1 to 1000000"},
           {"* stall 5 retry-after 5", "\"retry-after\" is too much"},
           {"* status 429 retry-after soon", "retry-after takes a number from 0 to 1000000000"},
           {"* html x0", "x takes a number from 1 to 1000000"},
           {"* cut 5 x2 y", "\"y\" is too much"}}) {
    auto const reply = client.Send("PUT", url, std::string("* html\n") + line);
    EXPECT_EQ(reply.status, 400) << line;
    EXPECT_EQ(reply.body, std::string("line 2: ") + complaint + "\n");
  }
  EXPECT_EQ(client.Send("GET", url).body, "* cut 0 x2\n");
}

/// The text with every `from` replaced.
std::string Replaced(std::string text, std::string const& from, std::string const& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

TEST(Namespace, IsTheOneThatTheServerWasGiven) {
  sandbox::ServerOptions options;
  options.namespaceBase = "http://vendor.example/x&y";
  OwnServer const server(options);
  std::string const ours = LumoSession::GetVendorNamespaceBase();
  Outcome const stranger(server.Url());
  EXPECT_EQ(stranger.code, 500);
  EXPECT_THAT(stranger.reply, HasSubstr(">a:ActionNotSupported</faultcode>"));
  EXPECT_THAT(stranger.fault, HasSubstr("Action '" + ours + "16/01/Browse/GetTablesRequest'"));

  auto const request = GetTables::CreateOne();
  request->SetDBKey(kMaterials);
  auto const session = LumoSession::CreateOne(server.Url(), nullptr);
  std::string const text =
      GetTablesImpl(session.get()).BuildRequestHandle(request)->GetRequestBuffer()->GetBytes();
  Client client;
  std::unique_ptr<curl_slist, void (*)(curl_slist*)> const headers(
      curl_slist_append(curl_slist_append(nullptr, "Content-Type: text/xml;charset=UTF-8"),
                        "SOAPAction: http://vendor.example/x&y/16/01/Browse/GetTablesRequest"),
      curl_slist_free_all);
  curl_easy_setopt(client.easy.get(), CURLOPT_HTTPHEADER, headers.get());
  EXPECT_THAT(client.Send("POST", server.Url() + "/Browse.svc", text).body,
              AllOf(HasSubstr("<faultcode>s:Client<"),
                    HasSubstr("xmlns:zbt=\"http://vendor.example/x&amp;y/16/01/")));
  auto const reply = client.Send("POST", server.Url() + "/Browse.svc",
                                 Replaced(text, ours, "http://vendor.example/x&amp;y/"));
  EXPECT_EQ(reply.status, 200);
  EXPECT_THAT(reply.body, HasSubstr("xmlns=\"http://vendor.example/x&amp;y/16/01/Browse\""));
}

TEST(Namespace, StandsInTheDescriptionOfEachService) {
  OwnServer const server;
  std::string const ours = LumoSession::GetVendorNamespaceBase();
  Client client;
  for (auto const& [service, operation] :
       std::vector<std::pair<std::string, std::string>>{{"Browse", "GetTables"},
                                                        {"Search", "RecordNameSearch"},
                                                        {"DataExport", "GetRecordAttributesByRef"},
                                                        {"DataImport", "SetRecordAttributes"},
                                                        {"EngineeringData", "ExportRecordData"}}) {
    auto const reply = client.Send("GET", server.Url() + "/" + service + ".svc?wsdl");
    EXPECT_EQ(reply.status, 200);
    XmlDocument<char> document;
    ASSERT_TRUE(
        XMLUtilites::Parse(reply.body.data(), reply.body.data() + reply.body.size(), document));
    auto const* const target = document.first_node()->first_attribute("targetNamespace");
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(target->value(), ours + "16/01/" + service);
    EXPECT_THAT(reply.body, HasSubstr("soapAction=\"" + ours + "16/01/" + service + "/" +
                                      operation + "Request\""));
  }
  EXPECT_EQ(client.Send("GET", server.Url() + "/Browse.svc").status, 404);
}

TEST(Stop, DoesNotWaitForClients) {
  OwnServer server;
  Client idle;
  idle.Send("PUT", server.Url() + "/control/faults", "* stall 60");
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(server.Port()));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int const unfinished = socket(AF_INET, SOCK_STREAM, 0);
  EXPECT_EQ(connect(unfinished, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(send(unfinished, "GET / HT", 8, 0), 8);
  EXPECT_NE(Outcome(server.Url()).transportError, "");  // gave up; the server stalls on
  EXPECT_LT(server.Stop().count(), 0.5);
  close(unfinished);
}

TEST(Log, TellsWhatWasSentButNoProofOfIdentity) {
  std::ostringstream log;
  sandbox::ServerOptions options = WithLogOn(sandbox::LogOn::Basic);
  options.log = &log;
  OwnServer server(options);
  Outcome const outcome(server.Url(),
                        LumoSLAuth_Authenticated::CreateOne(options.user, options.password));
  server.Stop();
  EXPECT_THAT(log.str(), AllOf(HasSubstr(" GetTables 401 in "), HasSubstr(" GetTables 200 in "),
                               HasSubstr(" ms, done\n"),
                               HasSubstr("\n        <brow:dbKey>ENG_MATERIALS</brow:dbKey>\n"),
                               Not(HasSubstr(options.password)), Not(HasSubstr("Basic"))));
}
