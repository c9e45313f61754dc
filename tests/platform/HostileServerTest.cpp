#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <mutex>
#include <random>
#include <string>
#include <vector>

#include "tests/support/Http.h"

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;
using testing::SizeIs;

namespace {

std::string const kStaleDigest =
    "WWW-Authenticate: Digest realm=\"r\", nonce=\"n\", qop=\"auth\", stale=true\r\n";

}  // namespace

TEST(HostileServer, MayBeginAHeadWithABlankOnAKeptConnection) {
  std::string const first = HttpReply("200 OK", "fine", "X-Long: " + Repeated("x", 500) + "\r\n");
  std::string const stray = "HTTP/1.1 200 OK\r\n X: 1\r\nContent-Length: 0\r\n\r\n";
  std::string const tab = "HTTP/1.1 200 OK\r\n\tX: 1\r\nContent-Length: 0\r\n\r\n";
  std::string const challenge = Challenge("WWW-Authenticate: Basic realm=\"r\"\r\n");
  for (std::vector<std::string> const& hostile : {std::vector<std::string>{stray},
                                                  {tab},
                                                  {"HTTP/1.1 100 Continue\r\n\r\n" + stray},
                                                  {challenge, stray}}) {
    std::vector<std::string> replies = {first};
    replies.insert(replies.end(), hostile.begin(), hostile.end());
    replies.push_back(kFine);
    RawServer const server(Replies(replies));
    auto const client = ClientOf(server.Url());
    client->ApplyCredentials(L"u", L"p");
    EXPECT_EQ(Post(*client)->GetStatusCode(), 200);
    auto const message = Post(*client);
    EXPECT_EQ(message->GetResponseBuffer(), nullptr);
    EXPECT_EQ(message->GetReport()->failure, eHttpFailure_NotUnderstood);
    EXPECT_EQ(message->GetTransportError(), "the reply's first header begins with a blank");
    EXPECT_EQ(Post(*client)->GetResponseBuffer()->GetBytes(), "fine");
  }
}

TEST(HostileServer, MayFoldAHeaderAndWriteTrailers) {
  RawServer const server(Replies(
      {"HTTP/1.1 200 OK\r\nX: a\r\n\t b\r\nY: " + std::string(20000, ' ') +
       "c\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nfine\r\n0\r\nHTTP/1.1 100 Z: d\r\n\r\n"}));
  auto const client = ClientOf(server.Url());
  for (int call = 0; call < 2; ++call) {
    auto const message = Post(*client);
    ASSERT_EQ(message->GetStatusCode(), 200) << message->GetTransportError();
    EXPECT_EQ(message->GetResponseBuffer()->GetBytes(), "fine");
    EXPECT_THAT(message->AccessResponseHeaders(), Contains(Pair("X", "a b")));
    EXPECT_THAT(message->AccessResponseHeaders(), Contains(Pair("Y", "c")));
    EXPECT_THAT(message->AccessResponseHeaders(), Contains(Pair("HTTP/1.1 100 Z", "d")));
  }
}

TEST(HostileServer, GetsEightRequestsForALogOnWithoutEnd) {
  for (std::string const& challenge : {kStaleDigest, kNtlmQuestion}) {
    RawServer const server(Replies({Challenge("X-Number: 1\r\n" + challenge)}));
    auto const client = ClientOf(server.Url());
    client->ApplyCredentials(L"u", L"p");
    auto const message = Post(*client);
    EXPECT_THAT(server.Requests(), SizeIs(8));
    EXPECT_EQ(message->GetStatusCode(), 401);
    EXPECT_NE(message->GetResponseBuffer(), nullptr);
    EXPECT_EQ(message->GetTransportError(), "");
    EXPECT_THAT(message->AccessResponseHeaders(), Contains(Pair("X-Number", "1")));
  }
}

TEST(HostileServer, GetsEightRequestsForATunnelWithoutEnd) {
  RawServer const proxy(Replies({HttpReply("407 Who", "",
                                           "Proxy-Authenticate: Digest realm=\"r\", nonce=\"n\", "
                                           "qop=\"auth\", stale=true\r\n")}));
  auto const client = ClientOf("https://materials.test");
  HttpTransportSettings settings;
  settings.proxy = proxy.Url();
  settings.proxyUser = "u";
  client->SetTransportSettings(settings);
  auto const message = Post(*client);
  EXPECT_THAT(proxy.Requests(), SizeIs(8));
  EXPECT_EQ(message->GetReport()->failure, eHttpFailure_Proxy);
}

TEST(HostileServer, MaySendAHundredInterimReplies) {
  for (char const* const interim :
       {"HTTP/1.1 100 Continue\r\n\r\n", "HTTP/1.1 102 Processing\r\n\r\n",
        "HTTP/1.1 103 Early Hints\r\nLink: </x>\r\n\r\n"}) {
    RawServer const server(
        Replies({Repeated(interim, 100) + kFine, Repeated(interim, 101) + kFine}));
    auto const client = ClientOf(server.Url());
    EXPECT_EQ(Post(*client)->GetStatusCode(), 200);
    auto const message = Post(*client);
    EXPECT_EQ(message->GetResponseBuffer(), nullptr);
    EXPECT_THAT(message->GetTransportError(), HasSubstr("more than 100 interim replies"));
  }
}

TEST(HostileServer, AnnouncingMoreThanTheCapIsRefusedBeforeItSendsAnything) {
  RawServer const server([](RawConnection& connection, int) {
    connection.ReadRequest();
    connection.Send("HTTP/1.1 200 OK\r\nContent-Length: 1001\r\n\r\nx");
    connection.WaitForClose();
  });
  auto const client = ClientOf(server.Url());
  HttpTransportSettings settings;
  settings.maxReplyBytes = 1000;
  client->SetTransportSettings(settings);
  EXPECT_EQ(Post(*client)->GetReport()->failure, eHttpFailure_TooLarge);
}

// ---------- mutated heads

namespace {

/// Replies as servers write them, to be spoiled.
std::vector<std::string> Originals() {
  std::string const type = "Content-Type: text/xml; charset=utf-8\r\n";
  std::string const chunked =
      "HTTP/1.1 200 OK\r\n" + type + "Transfer-Encoding: chunked\r\nTrailer: X-End\r\n\r\n";
  return {
      HttpReply("200 OK", "<a/>"),
      HttpReply("200 OK", "<a/>", type + "X-Folded: a\r\n b\r\n\tc\r\nServer: x\r\n"),
      chunked + "4\r\n<a/>\r\n0\r\nX-End: 1\r\n\r\n",
      "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nLink: </x>\r\n\r\n" + kFine,
      "HTTP/1.0 200 OK\r\n" + type + "Connection: keep-alive\r\nContent-Length: 4\r\n\r\n<a/>",
      Challenge("WWW-Authenticate: Basic realm=\"r\", Digest realm=\"r\", nonce=\"n\"\r\n"),
      Challenge(kStaleDigest),
      Challenge(kNtlmQuestion),
      Challenge("WWW-Authenticate: Negotiate\r\nWWW-Authenticate: NTLM\r\n"),
      HttpReply("302 Found", "", "Location: http://127.0.0.1:1/\r\nSet-Cookie: a=b; Path=/\r\n"),
      HttpReply("500 Internal", "<s:Fault/>", type + "Retry-After: 2\r\nAlt-Svc: h3=\":1\"\r\n"),
      "HTTP/1.1 204 No Content\r\nStrict-Transport-Security: max-age=1\r\n\r\n",
  };
}

/// Makes a reply's head worse, at a few places.
class Spoiler {
 private:
  int Number(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(m_random);
  }
  template <class List>
  auto const& Pick(List const& list) {
    return list[static_cast<std::size_t>(Number(0, static_cast<int>(list.size()) - 1))];
  }

 public:
  std::string Next() {
    std::string reply = Pick(m_originals);
    for (int i = Number(1, 4); i > 0; --i) Spoil(reply);
    return reply;
  }

 private:
  /// Somewhere in the head, more often at the beginning of a line than not.
  std::size_t Place(std::string const& reply) {
    std::size_t const end = std::min(reply.find("\r\n\r\n"), reply.size());
    auto const any = static_cast<std::size_t>(Number(0, static_cast<int>(end)));
    std::size_t const line = reply.find('\n', any);
    return Number(0, 2) == 0 || line == std::string::npos ? any : line + 1;
  }

  void Spoil(std::string& reply) {
    std::size_t const place = Place(reply);
    std::size_t const line = std::min(reply.find('\n', place), reply.size() - 1) + 1;
    switch (Number(0, 7)) {
      case 0: reply.insert(place, 1, Pick(kBytes)); break;
      case 1: reply.erase(place, static_cast<std::size_t>(Number(1, 3))); break;
      case 2: reply.insert(place, Pick(kLines)); break;
      case 3: reply.erase(place, line - place); break;
      case 4: reply.insert(place, reply.substr(place, line - place)); break;
      case 5: reply.insert(place, static_cast<std::size_t>(Number(1, 40000)), Pick(kBytes)); break;
      case 6:
        reply.resize(static_cast<std::size_t>(Number(0, static_cast<int>(reply.size()))));
        break;
      default:
        if (place < reply.size()) reply[place] = static_cast<char>(Number(0, 255));
    }
  }

  static constexpr std::array<char, 12> kBytes = {' ', '\t', '\r', '\n',   '\0', ':',
                                                  ';', ',',  '"',  '\xFF', '0',  'A'};
  std::vector<std::string> const m_originals = Originals();
  std::vector<std::string> const kLines = {
      " X: 1\r\n",
      "\tX: 1\r\n",
      "Content-Length: -1\r\n",
      "Content-Length: 99999999999999999999\r\n",
      "Transfer-Encoding: gzip, chunked\r\n",
      "Connection: close\r\n",
      ": x\r\n",
      "\r\n",
      "HTTP/1.1 200 OK\r\n",
      "HTTP/2 200\r\n",
      "Content-Encoding: gzip\r\n",
      "X\r\n",
      "WWW-Authenticate: Digest nonce=\"" + std::string(3000, 'n') + "\r\n",
      "WWW-Authenticate: NTLM TlRMTVNTUAACAAAA//////////8=\r\n",
      kNtlmQuestion,
      kStaleDigest,
      "Persistent-Auth: false\r\n",
      "Location: \r\n",
      "Content-Range: bytes 1-2/3\r\n"};
  std::mt19937 m_random{20260101};
};

/// How many heads are tried; LUMO_TEST_HEADS asks for more.
int HeadCount() {
  char const* const wanted = std::getenv("LUMO_TEST_HEADS");
  return wanted == nullptr ? 400 : std::atoi(wanted);
}

}  // namespace

TEST(HostileServer, MaySpoilItsHeadsAsItLikes) {
  Spoiler spoiler;
  constexpr int kHeadsOfAServer = 400;
  constexpr int kPatienceMs = 3;  // until the client may be waiting for what does not come
  for (int done = 0; done < HeadCount(); done += kHeadsOfAServer) {
    std::mutex mutex;
    std::string reply;
    auto const current = [&] {
      std::lock_guard<std::mutex> const lock(mutex);
      return reply;
    };
    RawServer const server([&current](RawConnection& connection, int) {
      while (!connection.ReadRequest().empty()) {
        if (!connection.Send(current()) || !connection.HasNews(kPatienceMs)) return;
      }
    });
    auto const client = ClientOf(server.Url());
    client->ApplyCredentials(L"u", L"p");
    client->SetAutologonPolicy(done % (2 * kHeadsOfAServer) != 0, false);
    for (int i = 0; i < kHeadsOfAServer; ++i) {
      {
        std::lock_guard<std::mutex> const lock(mutex);
        reply = spoiler.Next();
      }
      auto const message = Post(*client);
      bool const isReply = message->GetResponseBuffer() != nullptr;
      EXPECT_EQ(message->GetReport()->failure == eHttpFailure_None, isReply);
      EXPECT_EQ(message->GetTransportError().empty(), isReply);
      EXPECT_EQ(message->GetStatusCode() != 0, isReply);
    }
    EXPECT_LT(static_cast<std::size_t>(server.Connections()), server.Requests().size());
  }
}
