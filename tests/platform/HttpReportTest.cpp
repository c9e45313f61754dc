#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/Http.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

/// Sets an environment variable as long as it lives.
class Variable {
 public:
  Variable(std::string const& name, std::string const& value) : m_name(name) {
    setenv(name.c_str(), value.c_str(), 1);
  }
  ~Variable() { unsetenv(m_name.c_str()); }
  Variable(Variable const&) = delete;
  Variable& operator=(Variable const&) = delete;

 private:
  std::string m_name;
};

SmartPtr<HttpReport> ReportOf(std::string const& url,
                              HttpTransportSettings const& settings = HttpTransportSettings()) {
  auto const client = ClientOf(url);
  client->SetTransportSettings(settings);
  return Post(*client)->GetReport();
}

}  // namespace

// ---------- why no reply came

namespace {

struct BadServer {
  char const* name;
  std::string bytes;  ///< what it sends before it closes
  eHttpFailure failure;
};

void PrintTo(BadServer const& server, std::ostream* out) { *out << server.name; }

class BadServerTest : public testing::TestWithParam<BadServer> {};

std::string const kHead = "HTTP/1.1 200 OK\r\n";

}  // namespace

TEST_P(BadServerTest, IsToldByKindAndPhase) {
  RawServer const server([](RawConnection& connection, int) {
    connection.ReadRequest();
    connection.Send(GetParam().bytes);
  });
  auto const report = ReportOf(server.Url());
  EXPECT_EQ(report->failure, GetParam().failure) << report->error;
  EXPECT_EQ(report->phase, eHttpPhase_Receiving);
  EXPECT_NE(report->error, "");
  EXPECT_NE(report->errorNumber, 0);
}

INSTANTIATE_TEST_SUITE_P(
    All, BadServerTest,
    testing::Values(
        BadServer{"Silent", "", eHttpFailure_ConnectionLost},
        BadServer{"CutInItsHead", kHead, eHttpFailure_ConnectionLost},
        BadServer{"CutInItsBody", kHead + "Content-Length: 9\r\n\r\nx",
                  eHttpFailure_ConnectionLost},
        BadServer{"NotHttp", "SSH-2.0-OpenSSH_9.2\r\n\r\n", eHttpFailure_NotUnderstood},
        BadServer{"UnknownVersion", "HTTP/4.4 200 OK\r\n\r\n", eHttpFailure_NotUnderstood},
        BadServer{"HeaderWithoutColon", kHead + "X\r\n\r\n", eHttpFailure_NotUnderstood},
        BadServer{"BadLength", kHead + "Content-Length: x\r\n\r\n", eHttpFailure_NotUnderstood},
        BadServer{"HeadersWithoutEnd", kHead + Repeated("X: 0123456789012345678\r\n", 60000),
                  eHttpFailure_TooLarge}),
    [](auto const& row) { return std::string(row.param.name); });

TEST(Report, TellsWhatWentWrongBeforeARequestWentOut) {
  EXPECT_EQ(ReportOf("http://unknown.test")->failure, eHttpFailure_NameResolution);
  auto const refused = ReportOf(AbandonedUrl());
  EXPECT_EQ(refused->failure, eHttpFailure_Connection);
  EXPECT_EQ(refused->phase, eHttpPhase_Connecting);
  for (char const* const url : {"gopher://127.0.0.1", "http://[::1", "http://u:p@127.0.0.1"}) {
    EXPECT_EQ(ReportOf(url)->failure, eHttpFailure_Setup) << url;
  }
  RawServer const plain([](RawConnection& connection, int) {
    connection.Send("HTTP/1.1 400 Bad Request\r\n\r\n");
    connection.WaitForClose();
  });
  std::string const withTls = "https://127.0.0.1:" + std::to_string(plain.Port());
  EXPECT_EQ(ReportOf(withTls)->failure, eHttpFailure_Tls);
  EXPECT_EQ(ReportOf(withTls)->phase, eHttpPhase_Connecting);
  HttpTransportSettings settings;
  settings.caFile = "/nowhere";
  EXPECT_EQ(ReportOf(withTls, settings)->failure, eHttpFailure_Tls);
  settings.caFile = Repeated("x", 9'000'000);  // libcurl takes no texts of this length
  auto const report = ReportOf(plain.Url(), settings);
  EXPECT_EQ(report->failure, eHttpFailure_Setup);
  EXPECT_EQ(report->phase, eHttpPhase_None);
  EXPECT_THAT(report->error, HasSubstr("CAINFO"));
}

TEST(Report, OfAMessageThatIsSentAgainIsNew) {
  std::string const url = AbandonedUrl();
  RawServer const server(Replies({kFine}));
  auto const message = HttpMessage::CreateOne();
  ClientOf(server.Url())->SendRequest(L"/p", eHttpVerb_Post, message);
  auto const first = message->GetReport();
  ClientOf(url)->SendRequest(L"/p", eHttpVerb_Post, message);
  EXPECT_EQ(message->GetResponseBuffer(), nullptr);
  EXPECT_EQ(message->GetStatusCode(), 0);
  EXPECT_EQ(message->GetReport()->failure, eHttpFailure_Connection);
  EXPECT_EQ(first->failure, eHttpFailure_None);
}

namespace {

/// Fails as its maker says.
class BadTransport : public HttpTransport {
 public:
  explicit BadTransport(std::function<void()> fail) : m_fail(std::move(fail)) {}
  int Send(std::shared_ptr<HttpOptions const> const& /*options*/, std::string const& /*path*/,
           eHttpVerb /*verb*/, HttpMessage& /*message*/) override {
    m_fail();
    return 7;
  }

 private:
  std::function<void()> m_fail;
};

}  // namespace

TEST(Report, OfATransportThatTellsNothingHasAKindAllTheSame) {
  std::vector<std::pair<std::function<void()>, eHttpFailure>> const ways = {
      {[] {}, eHttpFailure_Other},
      {[] { throw std::runtime_error("broken"); }, eHttpFailure_Other},
      {[] { throw std::bad_alloc(); }, eHttpFailure_OutOfMemory}};
  for (auto const& [fail, kind] : ways) {
    HttpClient::SetTransportFactory(
        [&fail = fail] { return SmartPtr<HttpTransport>(new BadTransport(fail)); });
    auto const message = Post(*ClientOf("http://127.0.0.1"));
    EXPECT_EQ(message->GetReport()->failure, kind);
  }
  HttpClient::SetTransportFactory({});
}

// ---------- log-on

TEST(LogOnReport, TellsWhatTheServerOffersAndWhatWasUsed) {
  std::string const offers =
      "WWW-Authenticate: Negotiate\r\nWWW-Authenticate: NTLM\r\n"
      "www-authenticate: Digest realm=\"a, b \\\" c\", nonce=\"n\" , Basic realm=\"r\"\r\n";
  RawServer const server(Replies({Challenge(offers), kFine}));
  auto const client = ClientOf(server.Url());
  client->ApplyCredentials(L"u", L"s3cr3t");
  auto const report = Post(*client)->GetReport();
  EXPECT_THAT(report->logOn.offered, ElementsAre("Negotiate", "NTLM", "Digest", "Basic"));
  EXPECT_EQ(report->logOn.used, "Digest");
  EXPECT_EQ(report->logOn.trouble, "");
  EXPECT_THAT(Post(*client)->GetReport()->logOn.offered, IsEmpty());
}

TEST(LogOnReport, TellsWhyATicketWasNotAccepted) {
  Variable const cache("KRB5CCNAME", "FILE:/nowhere/tickets");
  RawServer const server(Replies({Challenge("WWW-Authenticate: Negotiate\r\n")}));
  auto const client = ClientOf(server.Url());
  client->SetAutologonPolicy(true, false);
  auto const message = Post(*client);
  EXPECT_EQ(message->GetStatusCode(), 401);
  EXPECT_THAT(message->GetReport()->logOn.offered, ElementsAre("Negotiate"));
  EXPECT_THAT(message->GetReport()->logOn.trouble, HasSubstr("gss_init_sec_context() failed: "));
}

TEST(LogOnReport, TellsWhyNtlmWentWrong) {
  RawServer const server(Replies({Challenge("WWW-Authenticate: NTLM\r\n"),
                                  Challenge("WWW-Authenticate: NTLM TlRMTVNTUAA=\r\n")}));
  auto const client = ClientOf(server.Url());
  client->ApplyCredentials(L"u", L"s3cr3t");
  EXPECT_THAT(Post(*client)->GetReport()->logOn.trouble, HasSubstr("NTLM handshake failure"));
}

// ---------- proxies

TEST(Proxy, IsNamedWithItsVariableAndWithoutThePassword) {
  std::string const address = AbandonedUrl();
  std::string const withPassword = "http://u:s3cr3t@" + address.substr(7);
  Variable const variable("http_proxy", withPassword);
  auto const fromVariable = ReportOf("http://materials.test");
  EXPECT_EQ(fromVariable->failure, eHttpFailure_Proxy);
  EXPECT_EQ(fromVariable->proxy, address);
  EXPECT_EQ(fromVariable->proxyVariable, "http_proxy");

  HttpTransportSettings settings;
  settings.proxy = withPassword;
  auto const fromSettings = ReportOf("http://materials.test", settings);
  EXPECT_EQ(fromSettings->failure, eHttpFailure_Proxy);
  EXPECT_EQ(fromSettings->proxy, address);
  EXPECT_EQ(fromSettings->proxyVariable, "");
  EXPECT_THAT(fromVariable->error + fromSettings->error, Not(HasSubstr("s3cr3t")));
}

TEST(Proxy, IsNotAskedForLoopbackWhateverTheUrlLooksLike) {
  RawServer const proxy(Replies({HttpReply("503 Proxy", "")}));
  RawServer const server(Replies({kFine}));
  Variable const variable("http_proxy", proxy.Url());
  std::string const port = ":" + std::to_string(server.Port());
  for (std::string const host : {"127.0.0.1", "localhost", "LOCALHOST", "http://localhost"}) {
    auto const message = Post(*ClientOf(host + port));
    EXPECT_EQ(message->GetStatusCode(), 200) << host << message->GetTransportError();
    EXPECT_EQ(message->GetReport()->proxy, "");
  }
  EXPECT_EQ(proxy.Connections(), 0);
}

TEST(Proxy, IsAnsweredWithItsOwnUser) {
  std::string const offer = "Proxy-Authenticate: Basic realm=\"r\"\r\n";
  RawServer const proxy(Replies({HttpReply("407 Who", "", offer), kFine}));
  HttpTransportSettings settings;
  settings.proxy = proxy.Url();
  auto const refused = ReportOf("https://materials.test", settings);
  EXPECT_EQ(refused->failure, eHttpFailure_Proxy);
  EXPECT_EQ(refused->proxyStatus, 407);
  EXPECT_THAT(refused->logOn.offeredByProxy, ElementsAre("Basic"));

  RawServer const second(Replies({HttpReply("407 Who", "", offer), kFine}));
  settings.proxy = second.Url();
  settings.proxyUser = "u";
  settings.proxyPassword = "s3cr3t";
  auto const report = ReportOf("http://materials.test", settings);
  EXPECT_EQ(report->failure, eHttpFailure_None);
  EXPECT_EQ(report->logOn.usedWithProxy, "Basic");
  ASSERT_THAT(second.Requests(), SizeIs(2));
  EXPECT_EQ(HeaderOf(second.Requests()[0], "Proxy-Authorization"), "");
  EXPECT_EQ(HeaderOf(second.Requests()[1], "Proxy-Authorization"), "Basic dTpzM2NyM3Q=");
}

// ---------- the connections that are kept

namespace {

/// Answers every request, and counts the connections that are open.
class CountingServer {
 public:
  CountingServer()
      : m_server([this](RawConnection& connection, int) {
          ++m_open;
          while (!connection.ReadRequest().empty()) {
            ++m_waiting;
            while (m_waiting < m_atOnce) std::this_thread::yield();
            connection.Send(kFine);
          }
          --m_open;
        }) {}
  std::string Url() const { return m_server.Url(); }
  /// Sends that many requests at once.
  void Burst(HttpClient& client, int count) {
    m_waiting = 0;
    m_atOnce = count;
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) threads.emplace_back([&client] { Post(client); });
    for (std::thread& thread : threads) thread.join();
    m_atOnce = 0;
  }
  /// Waits until that many connections are open.
  void WaitForOpen(int count) const {
    while (m_open != count) std::this_thread::yield();
  }

 private:
  std::atomic<int> m_open{0};
  std::atomic<int> m_waiting{0};
  std::atomic<int> m_atOnce{0};
  RawServer m_server;
};

}  // namespace

TEST(Pool, ClosesAllConnectionsWhenSettingsChange) {
  CountingServer server;
  auto const client = ClientOf(server.Url());
  server.Burst(*client, 4);
  server.WaitForOpen(4);
  client->SetTimeouts(5000, 5000, 5000, 5000);  // as they are
  Post(*client);
  server.WaitForOpen(4);
  client->SetTimeouts(5000, 5000, 5000, 6000);
  server.WaitForOpen(0);
}

TEST(Pool, ShrinksAfterABurst) {
  CountingServer server;
  auto const client = ClientOf(server.Url());
  server.Burst(*client, 6);
  server.WaitForOpen(6);
  for (int call = 0; call < 40; ++call) Post(*client);
  server.WaitForOpen(1);
}
