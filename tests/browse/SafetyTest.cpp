// Whom the page lets in, and what it can be made to show.

#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <list>
#include <nlohmann/json.hpp>
#include <thread>

#include "cli/browse/Guard.h"
#include "cli/browse/Page.h"
#include "cli/browse/ValueJson.h"
#include "tests/browse/Page.h"

using cli::browse::Asked;
using cli::browse::Guard;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

int StatusOf(Guard& guard, Asked const& asked) {
  auto const refusal = guard.Judge(asked);
  return refusal ? refusal->status : 200;
}

TEST(Guard, LetsInOnlyWhoKnowsTheTokenAndNamesThisHost) {
  Guard guard;
  guard.SetPort(4711);
  std::string const host = "127.0.0.1:4711";
  std::string const mine = "other=1; lumo_4711=" + guard.Token();
  struct {
    char const* what;
    Asked asked;
    int status;
  } const cases[] = {
      {"cookie", {"GET", "/api/server", host, mine, "", ""}, 200},
      {"cookie, own page", {"GET", "/api/server", host, mine, "", "same-origin"}, 200},
      {"name of the machine", {"GET", "/", "localhost:4711", mine, "", ""}, 200},
      {"token for the page", {"GET", "/", host, "", guard.Token(), ""}, 200},
      {"token from a link elsewhere", {"GET", "/", host, "", guard.Token(), "cross-site"}, 200},
      {"nothing", {"GET", "/", host, "", "", ""}, 403},
      {"wrong token", {"GET", "/", host, "", std::string(64, '0'), ""}, 403},
      {"beginning of the token", {"GET", "/", host, "", guard.Token().substr(0, 63), ""}, 403},
      {"token for data", {"GET", "/api/server", host, "", guard.Token(), ""}, 403},
      {"cookie of another port", {"GET", "/", host, "lumo_4712=" + guard.Token(), "", ""}, 403},
      {"empty cookie", {"GET", "/", host, "lumo_4711=", "", ""}, 403},
      {"name led here", {"GET", "/", "evil.example:4711", mine, "", ""}, 403},
      {"no host", {"GET", "/", "", mine, "", ""}, 403},
      {"other port", {"GET", "/", "127.0.0.1:80", mine, "", ""}, 403},
      {"host with a tail", {"GET", "/", host + ".evil.example", mine, "", ""}, 403},
      {"other site", {"GET", "/api/server", host, mine, "", "cross-site"}, 403},
      {"other port's page", {"GET", "/api/server", host, mine, "", "same-site"}, 403},
      {"post", {"POST", "/", host, mine, "", ""}, 405},
      {"head", {"HEAD", "/", host, mine, "", ""}, 405},
      {"preflight", {"OPTIONS", "/api/server", host, mine, "", "cross-site"}, 405},
  };
  for (auto const& one : cases) EXPECT_EQ(StatusOf(guard, one.asked), one.status) << one.what;
}

TEST(Guard, TakesAHostWithoutThePortThatBrowsersLeaveOut) {
  for (int const port : {80, 4711}) {
    Guard guard;
    guard.SetPort(port);
    for (char const* const host : {"127.0.0.1", "localhost"}) {
      EXPECT_EQ(StatusOf(guard, {"GET", "/", host, "", guard.Token(), ""}), port == 80 ? 200 : 403);
    }
    EXPECT_EQ(StatusOf(guard, {"GET", "/", "evil.example", "", guard.Token(), ""}), 403);
  }
}

TEST(Guard, TakesTheTokenOfACommandLineOnce) {
  Guard guard;
  guard.SetPort(4711);
  Asked const asked = {"GET", "/", "127.0.0.1:4711", "", guard.TokenForOnce(), ""};
  EXPECT_EQ(StatusOf(guard, asked), 200);
  EXPECT_EQ(StatusOf(guard, asked), 403);
  EXPECT_NE(Guard().Token(), guard.Token());
}

TEST(Picture, IsWhatItsBytesSay) {
  using cli::browse::PictureType;
  EXPECT_EQ(PictureType("\x89PNG\r\n\x1a\n..."), "image/png");
  EXPECT_EQ(PictureType("\xff\xd8\xff\xe0"), "image/jpeg");
  EXPECT_EQ(PictureType("GIF89a"), "image/gif");
  EXPECT_EQ(PictureType(std::string_view("RIFF\0\0\0\0WEBP", 12)), "image/webp");
  for (char const* const other : {"", "\x89PN", "<svg onload=alert(1)>", "<html>", "RIFF", "GIF"}) {
    EXPECT_EQ(PictureType(other), "") << other;
  }
}

TEST(Link, LeadsToTheWebAlone) {
  using cli::browse::SafeAddress;
  EXPECT_EQ(SafeAddress("HTTPS://a.example/x"), "HTTPS://a.example/x");
  for (char const* const other : {"javascript:alert(1)", " javascript:alert(1)", "data:text/html,x",
                                  "file:///etc/passwd", "//a.example", "http:", ""}) {
    EXPECT_EQ(SafeAddress(other), "") << other;
  }
}

TEST(Server, GivesItsPageACookieThatScriptsAndOtherSitesLack) {
  Page page(sandbox::Content::Minimal);
  auto const first = page.Browser().Get(page.PathWithToken());
  ASSERT_EQ(first->status, 200);
  EXPECT_THAT(first->get_header_value("Set-Cookie"),
              AllOf(HasSubstr("HttpOnly"), HasSubstr("SameSite=Strict"), HasSubstr("Path=/")));
  EXPECT_FALSE(page.Get("/")->has_header("Set-Cookie"));
  for (char const* const path : {"/", "/page/app.js", "/api/server", "/nothing"}) {
    auto const reply = page.Get(path);
    EXPECT_THAT(reply->get_header_value("Content-Security-Policy"),
                AllOf(HasSubstr("default-src 'none'"), HasSubstr("script-src 'self'"),
                      Not(HasSubstr("unsafe"))))
        << path;
    EXPECT_EQ(reply->get_header_value("X-Content-Type-Options"), "nosniff") << path;
    EXPECT_EQ(reply->get_header_value("Referrer-Policy"), "no-referrer") << path;
    EXPECT_FALSE(reply->has_header("Access-Control-Allow-Origin")) << path;
  }
}

TEST(Server, RefusesStrangersAndChanges) {
  Page page(sandbox::Content::Minimal);
  auto browser = page.Browser();
  for (char const* const path : {"/", "/page/app.js", "/api/server", "/nothing"}) {
    EXPECT_EQ(browser.Get(path)->status, 403) << path;
    EXPECT_EQ(page.Get(path, {{"Host", "evil.example"}})->status, 403) << path;
  }
  httplib::Headers const cookie = {{"Cookie", page.Cookie()}};
  auto const posted = browser.Post("/api/server", cookie, "x", "text/plain");
  EXPECT_EQ(posted->status, 405);
  EXPECT_EQ(posted->get_header_value("Allow"), "GET");
  EXPECT_EQ(browser.Head("/", cookie)->status, 405);
  EXPECT_EQ(browser.Delete("/", cookie)->status, 405);
}

TEST(Server, KnowsNoFilesButThoseOfThePage) {
  Page page(sandbox::Content::Minimal);
  EXPECT_EQ(page.Get("/page/app.js")->get_header_value("Content-Type"),
            "text/javascript; charset=utf-8");
  for (char const* const path : {"/page/../Guard.h", "/page/%2e%2e/Guard.h", "/page//etc/passwd",
                                 "/page/..%2f..%2fetc/passwd", "/page/app.js%00.html", "/page/",
                                 "//page/app.js", "/etc/passwd", "/api/../page/app.js"}) {
    EXPECT_EQ(page.Get(path)->status, 404) << path;
  }
}

TEST(Server, SharesItsPortWithNobody) {
  Page page(sandbox::Content::Minimal);
  auto const client = lumo::Client::Connect("http://127.0.0.1:1");
  EXPECT_THROW(cli::browse::Server(client, {page.Server().Port(), {}}), lumo::Error);
}

/// Sends a byte of a request now and then, as long as somebody reads.
class SlowClient {
 public:
  explicit SlowClient(int port) : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(static_cast<std::uint16_t>(port));
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(m_socket, reinterpret_cast<sockaddr*>(&to), sizeof to), 0);
    m_thread = std::thread([this] {
      for (int i = 0; i < 60 && send(m_socket, "G", 1, MSG_NOSIGNAL) == 1; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
      }
    });
  }
  ~SlowClient() {
    m_thread.join();
    close(m_socket);
  }
  SlowClient(SlowClient const&) = delete;
  SlowClient& operator=(SlowClient const&) = delete;

 private:
  int m_socket;
  std::thread m_thread;
};

TEST(Server, IsNeitherHeldNorKeptFromEndingBySlowStrangers) {
  Page page(sandbox::Content::Minimal);
  std::list<SlowClient> strangers;
  for (int i = 0; i < 12; ++i) strangers.emplace_back(page.Server().Port());
  auto const begin = std::chrono::steady_clock::now();
  EXPECT_EQ(page.Get("/api/server")->status, 200);
  page.End();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
}

TEST(Server, IsNotIdleWhileItAnswersAndCancelsThatAtItsEnd) {
  Page page(sandbox::Content::Minimal);
  std::string const tree = "/api/tree?db=ENG_MATERIALS&table=Materials";
  page.Get(tree);  // the table is open from here on
  page.Plan("GetChildNodes stall 2");
  EXPECT_EQ(page.Get(tree)->status, 200);
  EXPECT_EQ(page.Server().Idle().count(), 0);
  page.Plan("GetChildNodes stall 5");
  std::thread caller([&, cookie = page.Cookie(), browser = page.Browser()]() mutable {
    browser.Get(tree, {{"Cookie", cookie}});
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(1500));
  EXPECT_EQ(page.Server().Idle().count(), 0);
  auto const begin = std::chrono::steady_clock::now();
  page.End();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
  caller.join();
}

TEST(Server, SendsFilesOnlyToBeSaved) {
  Page page;
  std::string const record = "&id=69&db=ENG_MATERIALS&table=Materials";
  auto const picture = page.Get("/api/file?attribute=Photo" + record);
  ASSERT_EQ(picture->status, 200);
  EXPECT_EQ(picture->get_header_value("Content-Type"), "image/png");
  EXPECT_EQ(cli::browse::PictureType(picture->body), "image/png");
  auto const note = page.Get("/api/file?attribute=Processing%20note" + record);
  ASSERT_EQ(note->status, 200);
  EXPECT_EQ(note->get_header_value("Content-Type"), "application/octet-stream");
  EXPECT_THAT(note->get_header_value("Content-Disposition"), HasSubstr("attachment"));
}

TEST(Server, SendsTheFilesOfAVersion) {
  Page page;
  std::string const record = "id=69&db=ENG_MATERIALS&table=Materials";
  auto const around = nlohmann::json::parse(page.Get("/api/around?" + record)->body);
  for (auto const& version : around["versions"]) {
    auto const reply = page.Get("/api/file?attribute=Photo&" + record +
                                "&version=" + version["guid"].get<std::string>());
    EXPECT_EQ(reply->status, version["state"] == "released" ? 200 : 404) << version;
  }
}

}  // namespace
