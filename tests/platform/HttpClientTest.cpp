#include <arpa/inet.h>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

#include "lumo/LumoServiceLayer.h"
#include "tests/support/Http.h"

using testing::ElementsAre;
using testing::Ge;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::SizeIs;
using testing::StartsWith;

namespace {

std::string const kSecret = "s3cr3t-w0rd";
constexpr int kLimitMs = 200;
constexpr int kGraceMs = 2000;  // for a busy machine; what must not happen takes longer

/// Holds up a resolver until it is opened; each opening lets pass whoever waits.
class Gate {
 public:
  void Wait() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_opened.wait(lock, [this, before = m_openings] { return m_openings != before; });
  }
  void Open() {
    std::lock_guard<std::mutex> const lock(m_mutex);
    ++m_openings;
    m_opened.notify_all();
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_opened;
  int m_openings = 0;
};
Gate& ResolverGate() {
  static Gate& gate = *new Gate();  // may be waited at when the process ends
  return gate;
}

/// A port of loopback whose queue is full, so that a new connection gets no answer.
class FullListener {
 public:
  FullListener() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    m_sockets.push_back(socket(AF_INET, SOCK_STREAM, 0));
    EXPECT_EQ(bind(m_sockets[0], any, size), 0);
    EXPECT_EQ(listen(m_sockets[0], 0), 0);
    EXPECT_EQ(getsockname(m_sockets[0], any, &size), 0);
    m_port = ntohs(address.sin_port);
    for (int i = 0; i < 4; ++i) {
      m_sockets.push_back(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
      static_cast<void>(connect(m_sockets.back(), any, size));  // which takes until later
    }
  }
  ~FullListener() {
    for (int const socket : m_sockets) close(socket);
  }
  FullListener(FullListener const&) = delete;
  FullListener& operator=(FullListener const&) = delete;
  std::string Url() const { return "http://127.0.0.1:" + std::to_string(m_port); }

 private:
  std::vector<int> m_sockets;
  int m_port = 0;
};

}  // namespace

/// Stands before the system's: one made-up name never resolves, another does not exist.
extern "C" int getaddrinfo(char const* name, char const* service, addrinfo const* hints,
                           addrinfo** result) {
  if (name != nullptr && std::string(name) == "silent.test") {
    ResolverGate().Wait();
    return EAI_FAIL;
  }
  if (name != nullptr && std::string(name) == "unknown.test") return EAI_NONAME;
  using Resolve = int (*)(char const*, char const*, addrinfo const*, addrinfo**);
  static auto const system = reinterpret_cast<Resolve>(dlsym(RTLD_NEXT, "getaddrinfo"));
  return system(name, service, hints, result);
}

// ---------- log-on

TEST(LogOn, SendsNothingBeforeAChallengeAndRemembersBasic) {
  RawServer const server([](RawConnection& connection, int) {
    for (std::string request; !(request = connection.ReadRequest()).empty();) {
      bool const known = HeaderOf(request, "Authorization") == "Basic RFx1OnMzY3IzdC13MHJk";
      connection.Send(known ? kFine : Challenge("WWW-Authenticate: Basic realm=\"r\"\r\n"));
    }
  });
  auto const client = ClientOf(server.Url());
  client->ApplyCredentials(L"D\\u", L"s3cr3t-w0rd");
  auto const first = Post(*client);
  EXPECT_EQ(first->GetResponseBuffer()->GetBytes(), "fine");
  EXPECT_THAT(first->AccessResponseHeaders(), SizeIs(2));  // none of the challenge's
  EXPECT_EQ(Post(*client)->GetStatusCode(), 200);
  ASSERT_THAT(server.Requests(), SizeIs(3));  // the second call needs one round trip
  EXPECT_EQ(HeaderOf(server.Requests()[0], "Authorization"), "");
  EXPECT_EQ(server.Connections(), 1);
}

TEST(LogOn, PrefersDigestAndNtlmToBasic) {
  std::string const basic = "WWW-Authenticate: Basic realm=\"r\"\r\n";
  std::vector<std::pair<std::string, std::string>> const methods = {
      {"WWW-Authenticate: Digest realm=\"r\", nonce=\"n\", qop=\"auth\"\r\n",
       "Digest username=\"u\""},
      {"WWW-Authenticate: NTLM\r\n", "NTLM TlRMTVNTUAAB"},
  };
  for (auto const& [challenge, answer] : methods) {
    RawServer const server(Replies({Challenge(basic + challenge), kFine}));
    auto const client = ClientOf(server.Url());
    client->ApplyCredentials(L"u", L"s3cr3t-w0rd");
    EXPECT_EQ(Post(*client)->GetStatusCode(), 200);
    ASSERT_THAT(server.Requests(), SizeIs(Ge(2)));
    EXPECT_EQ(HeaderOf(server.Requests()[0], "Authorization"), "");
    EXPECT_THAT(HeaderOf(server.Requests()[1], "Authorization"), StartsWith(answer));
  }
}

TEST(LogOn, OfAWriteByNtlmStaysOnItsConnection) {
  RawServer const server(
      Replies({Challenge("WWW-Authenticate: NTLM\r\n"), Challenge(kNtlmQuestion), kFine}));
  auto const client = ClientOf(server.Url());
  client->ApplyCredentials(L"u", L"s3cr3t-w0rd");
  EXPECT_EQ(Post(*client, "<a/>", true)->GetStatusCode(), 200);
  ASSERT_THAT(server.Requests(), SizeIs(3));
  EXPECT_THAT(HeaderOf(server.Requests()[2], "Authorization"), StartsWith("NTLM TlRMTVNTUAAD"));
  EXPECT_THAT(server.Requests()[2], testing::EndsWith("\r\n\r\n<a/>"));
  EXPECT_EQ(server.Connections(), 1);
}

TEST(LogOn, TriesAWrongPasswordOnce) {
  RawServer const server(Replies({Challenge("WWW-Authenticate: Basic realm=\"r\"\r\n")}));
  auto const client = ClientOf(server.Url());
  client->ApplyCredentials(L"u", L"wr0ng");
  client->SetAutologonPolicy(true, false);
  EXPECT_EQ(Post(*client)->GetStatusCode(), 401);
  auto const requests = server.Requests();
  EXPECT_EQ(std::count_if(requests.begin(), requests.end(),
                          [](auto const& one) { return !HeaderOf(one, "Authorization").empty(); }),
            1);
}

TEST(LogOn, SendsAPasswordOutsideAsciiAsUtf8AfterTheChallenge) {
  RawServer const server(Replies({Challenge("WWW-Authenticate: Basic realm=\"r\"\r\n"), kFine}));
  auto const client = ClientOf(server.Url());
  client->ApplyCredentials(L"u", L"\u00fc\u20ac");
  EXPECT_EQ(Post(*client)->GetStatusCode(), 200);
  ASSERT_THAT(server.Requests(), SizeIs(2));
  EXPECT_EQ(HeaderOf(server.Requests()[0], "Authorization"), "");
  EXPECT_EQ(HeaderOf(server.Requests()[1], "Authorization"), "Basic dTrDvOKCrA==");
}

TEST(LogOn, FailsAs401WithoutTellingThePassword) {
  RawServer const server(Replies({Challenge("WWW-Authenticate: Basic realm=\"r\"\r\n")}));
  auto const client = ClientOf(server.Url());
  client->ApplyCredentials(L"u", L"s3cr3t-w0rd");
  auto const message = Post(*client);
  EXPECT_EQ(message->GetStatusCode(), 401);
  EXPECT_EQ(message->GetResponseBuffer()->GetBytes(), "<html>who?</html>");
  EXPECT_THAT(message->GetTransportError(), Not(HasSubstr(kSecret)));

  int const connections = server.Connections();
  std::string const port = std::to_string(server.Port());
  auto const inUrl = Post(*ClientOf("http://u:" + kSecret + "@127.0.0.1:" + port));
  EXPECT_EQ(server.Connections(), connections);
  EXPECT_EQ(inUrl->GetResponseBuffer(), nullptr);
  EXPECT_THAT(inUrl->GetTransportError(), Not(IsEmpty()));
  EXPECT_THAT(inUrl->GetTransportError(), Not(HasSubstr(kSecret)));
}

TEST(LogOn, AutomaticWithoutATicketEndsAs401) {
  RawServer const server(Replies({Challenge("WWW-Authenticate: Negotiate\r\n")}));
  auto const client = ClientOf(server.Url());
  client->SetAutologonPolicy(true, false);
  EXPECT_EQ(Post(*client)->GetStatusCode(), 401);
  for (std::string const& request : server.Requests()) {
    EXPECT_THAT(HeaderOf(request, "Authorization"), Not(HasSubstr("Basic")));
  }
}

TEST(LogOn, ChangedCredentialsDoNotInheritTheConnection) {
  RawServer const server(Replies({kFine}));
  auto const client = ClientOf(server.Url());
  Post(*client);
  Post(*client);
  EXPECT_EQ(server.Connections(), 1);
  client->ApplyCredentials(L"u", L"p");
  Post(*client);
  EXPECT_EQ(server.Connections(), 2);
}

// ---------- connections

TEST(Connection, ThatDiesIsReplacedForARead) {
  for (bool const takesTheSecond : {false, true}) {
    RawServer const server([takesTheSecond](RawConnection& connection, int number) {
      connection.ReadRequest();
      connection.Send(kFine);
      if (number != 0 || takesTheSecond) connection.ReadRequest();  // and closes without an answer
    });
    auto const client = ClientOf(server.Url());
    Post(*client);
    EXPECT_EQ(Post(*client)->GetStatusCode(), 200);
    EXPECT_THAT(server.Requests(), SizeIs(takesTheSecond ? 3 : 2));
  }
}

TEST(Connection, OfAWriteIsFreshAndNotReplaced) {
  RawServer const server([](RawConnection& connection, int number) {
    connection.ReadRequest();
    if (number == 0) connection.Send(kFine);
    if (number == 0) connection.WaitForClose();
  });
  auto const client = ClientOf(server.Url());
  Post(*client);
  EXPECT_EQ(Post(*client, "<a/>", true)->GetResponseBuffer(), nullptr);
  EXPECT_EQ(server.Connections(), 2);
  EXPECT_THAT(server.Requests(), SizeIs(2));
}

TEST(Connection, ThatDiesBehindAChallengeDoesNotRepeatAWrite) {
  RawServer const server([](RawConnection& connection, int) {
    connection.ReadRequest();
    connection.Send(Challenge("WWW-Authenticate: Basic realm=\"r\"\r\n"));
    connection.ReadRequest();  // the write itself; no answer
  });
  auto const client = ClientOf(server.Url());
  client->ApplyCredentials(L"u", L"p");
  EXPECT_EQ(Post(*client, "<a/>", true)->GetResponseBuffer(), nullptr);
  EXPECT_THAT(server.Requests(), SizeIs(2));
}

TEST(Connection, ToLoopbackIgnoresTheProxy) {
  RawServer const proxy(Replies({HttpReply("503 Proxy", "")}));
  RawServer const server(Replies({kFine}));
  setenv("http_proxy", proxy.Url().c_str(), 1);
  EXPECT_EQ(Post(*ClientOf(server.Url()))->GetStatusCode(), 200);
  EXPECT_EQ(Post(*ClientOf("http://localhost:" + std::to_string(server.Port())))->GetStatusCode(),
            200);
  EXPECT_EQ(Post(*ClientOf("http://materials.test"))->GetStatusCode(), 503);
  unsetenv("http_proxy");
}

// ---------- time-outs

TEST(TimeOut, EndsSilenceWhileReceiving) {
  std::string const half = "HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\nhalf";
  // Silent at once, on a kept connection, in the middle of a log-on, in the middle of a reply.
  for (std::string const& first :
       {std::string(), kFine, Challenge("WWW-Authenticate: NTLM\r\n"), half}) {
    RawServer const server([&first](RawConnection& connection, int) {
      if (!first.empty()) connection.ReadRequest();
      connection.Send(first);
      connection.ReadRequest();
      connection.WaitForClose();
    });
    auto const client = ClientOf(server.Url());
    client->ApplyCredentials(L"u", L"p");
    client->SetTimeouts(5000, 5000, 5000, kLimitMs);
    if (first == kFine) Post(*client);
    long long const receiving = Elapsed(
        [&] { EXPECT_THAT(Post(*client)->GetTransportError(), HasSubstr("sent nothing")); });
    EXPECT_GE(receiving, kLimitMs);
    EXPECT_LT(receiving, kLimitMs + kGraceMs);
  }
}

TEST(TimeOut, EndsSilenceWhileSending) {
  RawServer const server([](RawConnection& connection, int) { connection.WaitForCloseUnread(); });
  auto const client = ClientOf(server.Url());
  client->SetTimeouts(5000, 5000, kLimitMs, 5000);
  std::string const large(16UL * 1024 * 1024, 'x');
  long long const sending = Elapsed(
      [&] { EXPECT_THAT(Post(*client, large)->GetTransportError(), HasSubstr("took nothing")); });
  EXPECT_LT(sending, kLimitMs + kGraceMs);
}

TEST(TimeOut, LeavesATricklingServerInPeace) {
  RawServer const server([](RawConnection& connection, int) {
    connection.ReadRequest();
    for (char const c : "HTTP/1.1 200 OK\r\n" + std::string("Content-Length: 2\r\n\r\nok")) {
      connection.Send(std::string(1, c));
      poll(nullptr, 0, 20);
    }
  });
  auto const client = ClientOf(server.Url());
  client->SetTimeouts(0, 0, 0, kLimitMs);  // the reply takes four times as long
  EXPECT_EQ(Post(*client)->GetStatusCode(), 200);
}

TEST(TimeOut, EndsAConnectionThatNobodyAccepts) {
  FullListener const listener;
  RawServer const mute([](RawConnection& connection, int) { connection.WaitForClose(); });
  for (std::string const& url :
       {listener.Url(), "https://127.0.0.1:" + std::to_string(mute.Port())}) {  // no TLS either
    auto const client = ClientOf(url);
    client->SetTimeouts(0, kLimitMs, 0, 0);
    long long const connecting = Elapsed(
        [&] { EXPECT_THAT(Post(*client)->GetTransportError(), HasSubstr("while connecting")); });
    EXPECT_LT(connecting, kLimitMs + kGraceMs);
  }
}

TEST(TimeOut, EndsANameThatDoesNotResolve) {
  auto const client = ClientOf("http://silent.test");
  client->SetTimeouts(kLimitMs, 5000, 5000, 5000);
  long long const resolving =
      Elapsed([&] { EXPECT_THAT(Post(*client)->GetTransportError(), HasSubstr("resolving")); });
  EXPECT_LT(resolving, kLimitMs + kGraceMs);
  ResolverGate().Open();
}

TEST(Abort, EndsACallInEveryWait) {
  std::string const large(16UL * 1024 * 1024, 'x');
  FullListener const listener;
  RawServer const mute([](RawConnection& connection, int) { connection.WaitForClose(); });
  RawServer const unread([](RawConnection& connection, int) { connection.WaitForCloseUnread(); });
  RawServer const half([](RawConnection& connection, int) {
    connection.ReadRequest();
    connection.Send("HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\nhalf");
    connection.WaitForClose();
  });
  struct Wait {
    std::string url;
    std::string body;
    eHttpPhase phase;
  };
  for (Wait const& wait :
       {Wait{"http://silent.test", "", eHttpPhase_Resolving},
        Wait{listener.Url(), "", eHttpPhase_Connecting},
        Wait{"https://127.0.0.1:" + std::to_string(mute.Port()), "", eHttpPhase_Connecting},
        Wait{unread.Url(), large, eHttpPhase_Sending}, Wait{mute.Url(), "", eHttpPhase_Receiving},
        Wait{half.Url(), "", eHttpPhase_Receiving}}) {
    auto const client = ClientOf(wait.url);
    client->SetTimeouts(0, 0, 0, 0);
    auto const start = std::chrono::steady_clock::now();
    int asked = 0;
    HttpTransportSettings settings;
    settings.progress = [&](std::uint64_t, std::uint64_t) {
      ++asked;
      return std::chrono::steady_clock::now() - start < std::chrono::milliseconds(kLimitMs);
    };
    client->SetTransportSettings(settings);
    long long const ended = Elapsed([&] {
      auto const report = Post(*client, wait.body)->GetReport();
      EXPECT_EQ(report->failure, eHttpFailure_Aborted);
      EXPECT_EQ(report->phase, wait.phase) << wait.url;
    });
    EXPECT_LT(ended, kLimitMs + kGraceMs);
    EXPECT_GE(asked, kLimitMs / 100) << wait.url;
  }
  ResolverGate().Open();
}

// ---------- what else a message tells

TEST(Message, KeepsReplyHeadersAndTimings) {
  RawServer const server(
      Replies({HttpReply("302 Found", "", "Location:  /else \r\nX-Empty:\r\n")}));
  auto const message = Post(*ClientOf(server.Url()));
  EXPECT_EQ(message->GetStatus(), eHttpStatusCode_Redirection);
  EXPECT_THAT(
      message->AccessResponseHeaders(),
      ElementsAre(Pair("Location", "/else"), Pair("X-Empty", ""), Pair("Content-Length", "0")));
  EXPECT_GT(message->GetTimings().total, 0);
  EXPECT_GE(message->GetTimings().total, message->GetTimings().firstByte);
  EXPECT_THAT(server.Requests(), SizeIs(1));
}

TEST(Message, SendsOnlyTheHeadersThatWereAdded) {
  RawServer const server(Replies({kFine}));
  auto const message = HttpMessage::CreateOne();
  std::string const large(2UL * 1024 * 1024, 'x');
  message->GetRequestBuffer()->SetMessage(large.data(), large.size());
  message->AddRequestHeader("X-Empty", "\r\n");
  message->AddRequestHeader("accept", std::string("a\0b\r\nInjected: c", 16));
  ClientOf(server.Url())->SendRequest(L"/p", eHttpVerb_Post, message);
  ASSERT_THAT(server.Requests(), SizeIs(1));
  std::string const request = server.Requests()[0];
  EXPECT_EQ(request.substr(0, request.find("xxx")),
            "POST /p HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.Port()) +
                "\r\nX-Empty:\r\naccept: abInjected: c\r\nContent-Length: 2097152\r\n\r\n");
  EXPECT_TRUE(request.substr(request.find("xxx")) == large);
}

TEST(Settings, CapTheReplyAndAbortOnRequest) {
  std::string const chunk = "1F4\r\n" + std::string(500, 'x') + "\r\n";
  RawServer const server(Replies(
      {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + chunk + chunk + "0\r\n\r\n"}));
  auto const client = ClientOf(server.Url());
  HttpTransportSettings settings;
  for (auto const& [cap, status] : {std::pair<std::size_t, int>{999, 0}, {1000, 200}}) {
    settings.maxReplyBytes = cap;
    client->SetTransportSettings(settings);
    EXPECT_EQ(Post(*client)->GetStatusCode(), status);
  }
  settings.progress = [](std::uint64_t, std::uint64_t received) { return received == 0; };
  client->SetTransportSettings(settings);
  auto const aborted = Post(*client);
  EXPECT_EQ(aborted->GetResponseBuffer(), nullptr);
  EXPECT_EQ(aborted->GetReport()->failure, eHttpFailure_Aborted);
}
