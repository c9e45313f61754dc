#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "lumo/toolkit/Connection.h"
#include "lumo/toolkit/Gate.h"
#include "tests/support/RawServer.h"
#include "tests/support/Session.h"
#include "tests/toolkit/Support.h"

using lumo::ErrorCode;
using lumo::HintCode;
using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

lumo::ConnectOptions Hasty() {
  lumo::ConnectOptions options;
  options.retry.initialBackoff = milliseconds(1);
  options.retry.maxBackoff = milliseconds(4);
  return options;
}

void AskForTables(lumo::Connection& connection) {
  connection.Ask<GetTablesResponse>([&](auto* into) {
    connection.Browse()->GetGetTablesImpl()->RequestTables(TablesOf("K"), into);
  });
}

void WriteNothing(lumo::Connection& connection) {
  connection.Write<SetRecordAttributesResponse>([&](auto* into) {
    connection.Import()->SetRecordAttributesImplPtr()->SetRecordAttributes_Request(
        SetRecordAttributesRequest::CreateOne(), into);
  });
}

template <class Work>
double SecondsOf(Work work) {
  auto const begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

std::string const kFine = HttpReply("200 OK", kTablesReply);
std::string const kBusy = HttpReply("503 Busy", "");

/// Answers the calls one after the other, whatever the connection: with the text, or by a reset for
/// "reset", a reply that is cut short for "cut", and with silence for "stall".
RawServer::Script Answers(std::vector<std::string> answers) {
  auto const next = std::make_shared<std::atomic<std::size_t>>(0);
  return [answers = std::move(answers), next](RawConnection& connection, int /*number*/) {
    while (!connection.ReadRequest().empty()) {
      std::string const& answer = answers[std::min(next->fetch_add(1), answers.size() - 1)];
      if (answer == "reset") return connection.Reset();
      if (answer == "stall") return connection.WaitForClose();
      if (answer == "cut") {
        connection.Send(kFine.substr(0, kFine.size() - 9));
        return;
      }
      connection.Send(answer);
    }
  };
}

}  // namespace

TEST(Connection, RepeatsReadsThatMaySucceedLater) {
  RawServer const server(Answers({"reset", "cut", kBusy, "stall", kFine}));
  lumo::ConnectOptions options = Hasty();
  options.stall = milliseconds(100);
  std::vector<std::string> tries;
  options.onCall = [&](lumo::CallEvent const& event) {
    tries.push_back(std::to_string(event.attempt) + " " + event.operation + " " +
                    (event.failure ? lumo::NameOf(*event.failure) : "fine"));
  };
  lumo::Connection connection(server.Url(), options);
  AskForTables(connection);
  EXPECT_THAT(tries, testing::ElementsAre("1 GetTables Connection", "2 GetTables Connection",
                                          "3 GetTables Unavailable", "4 GetTables Timeout",
                                          "5 GetTables fine"));
}

TEST(Connection, GivesUpWithAllTriesTold) {
  RawServer const server(Answers({"reset", kBusy}));
  lumo::ConnectOptions options = Hasty();
  options.retry.maxAttempts = 3;
  lumo::Connection connection(server.Url(), options);
  lumo::Error const error = ErrorOf([&] { AskForTables(connection); });
  EXPECT_EQ(error.Code(), ErrorCode::Unavailable);
  EXPECT_THAT(error.what(), HasSubstr("(3 tries in 0 s)"));
  ASSERT_THAT(error.Attempts(), SizeIs(3));
  EXPECT_EQ(error.Attempts()[0].code, ErrorCode::Connection);
  EXPECT_EQ(error.Attempts()[2].number, 3);
  EXPECT_THAT(server.Requests(), SizeIs(3));
}

TEST(Connection, RepeatsNeitherFaultsNorRefusalsNorChanges) {
  for (char const* const reply : {"500 Fault", "401 No", "403 No", "404 No", "302 Found"}) {
    RawServer const server(Answers({HttpReply(reply, Envelope("<s:Fault/>")), kFine}));
    lumo::Connection connection(server.Url(), Hasty());
    EXPECT_TRUE(ErrorOf([&] { AskForTables(connection); }).Attempts().empty()) << reply;
    EXPECT_THAT(server.Requests(), SizeIs(1)) << reply;
  }
  RawServer const server(Answers({kBusy, "reset", HttpReply("504 Late", "")}));
  lumo::Connection connection(server.Url(), Hasty());
  EXPECT_EQ(ErrorOf([&] { WriteNothing(connection); }).Code(), ErrorCode::Unavailable);
  EXPECT_EQ(ErrorOf([&] { WriteNothing(connection); }).Code(), ErrorCode::OutcomeUnknown);
  EXPECT_EQ(ErrorOf([&] { WriteNothing(connection); }).Code(), ErrorCode::OutcomeUnknown);
  EXPECT_THAT(server.Requests(), SizeIs(3));
}

TEST(Connection, AChangeThatNeverWentOutHasAKnownOutcome) {
  std::string url;
  {
    RawServer const server(Answers({kFine}));
    url = server.Url();
  }
  lumo::Connection connection(url, Hasty());
  EXPECT_EQ(ErrorOf([&] { WriteNothing(connection); }).Code(), ErrorCode::Connection);
}

TEST(RetryAfter, IsObeyed) {
  RawServer const server(Answers({HttpReply("429 Slow down", "", "Retry-After: 2\r\n"), kFine}));
  lumo::Connection connection(server.Url(), Hasty());
  EXPECT_THAT(SecondsOf([&] { AskForTables(connection); }),
              testing::AllOf(testing::Ge(2.0), testing::Lt(3.5)));
}

TEST(RetryAfter, HoldsBackAllCallsToTheServer) {
  RawServer const server(Answers({HttpReply("503 Busy", "", "Retry-After: 1\r\n"), kFine}));
  lumo::Connection first(server.Url(), Hasty());
  std::thread other([&] { AskForTables(first); });
  while (server.Requests().empty()) std::this_thread::yield();
  while (lumo::Gate::Of(server.Url())->ClosedUntil() < std::chrono::steady_clock::now()) {
    std::this_thread::yield();
  }
  lumo::Connection second(server.Url(), Hasty());
  EXPECT_GT(SecondsOf([&] { AskForTables(second); }), 0.5);
  other.join();
}

TEST(RetryAfter, OfADayIsRefusedAtOnceWithTheTime) {
  for (char const* const wait : {"Retry-After: 86400\r\n",
                                 "Date: Tue, 17 Mar 2026 09:30:00 GMT\r\n"
                                 "Retry-After: Wed, 18 Mar 2026 09:30:00 GMT\r\n"}) {
    RawServer const server(Answers({HttpReply("429 Slow down", "", wait), kFine}));
    lumo::Connection connection(server.Url(), Hasty());
    lumo::Error error(ErrorCode::Cancelled, "");
    EXPECT_LT(SecondsOf([&] { error = ErrorOf([&] { AskForTables(connection); }); }), 1);
    EXPECT_EQ(error.Code(), ErrorCode::RateLimited);
    EXPECT_EQ(error.Hint().code, HintCode::WaitSeconds);
    EXPECT_THAT(error.Hint().arguments, testing::ElementsAre("86400"));
    EXPECT_THAT(error.what(), testing::ContainsRegex("until 20[0-9-]+ [0-9:]+ UTC"));
    EXPECT_THAT(server.Requests(), SizeIs(1));
  }
}

TEST(Cancel, ReachesACallInFlightAndAWait) {
  for (auto const& [answer, isAsked] : {std::pair(std::string("stall"), false),
                                        {std::string(kBusy), false},
                                        {std::string("stall"), true},
                                        {std::string(kBusy), true}}) {
    RawServer const server(Answers({answer}));
    lumo::ConnectOptions options;
    options.retry.initialBackoff = options.retry.maxBackoff = std::chrono::minutes(1);
    std::atomic<bool> isInterrupted{false};
    options.isInterrupted = [&] { return isInterrupted.load(); };
    lumo::Connection connection(server.Url(), options);
    lumo::CancellationToken const token;
    connection.Scope().cancel = token;
    std::thread canceller([&, byAsking = isAsked] {
      while (server.Requests().empty()) std::this_thread::yield();
      if (byAsking) {
        isInterrupted = true;
      } else {
        token.Cancel();
      }
    });
    lumo::Error error(ErrorCode::Timeout, "");
    EXPECT_LT(SecondsOf([&] { error = ErrorOf([&] { AskForTables(connection); }); }), 1);
    EXPECT_EQ(error.Code(), ErrorCode::Cancelled);
    canceller.join();
  }
}

TEST(Deadline, EndsACallInFlight) {
  RawServer const server(Answers({"stall"}));
  lumo::Connection connection(server.Url(), Hasty());
  connection.Scope().deadline = std::chrono::steady_clock::now() + milliseconds(200);
  lumo::Error error(ErrorCode::Cancelled, "");
  EXPECT_LT(SecondsOf([&] { error = ErrorOf([&] { AskForTables(connection); }); }), 1.2);
  EXPECT_EQ(error.Code(), ErrorCode::Timeout);
  EXPECT_EQ(error.Operation(), "GetTables");
}

TEST(Gate, IsHalvedOnceForCallsThatWereUnderWayTogether) {
  auto const gate = lumo::Gate::Of("http://gate.test/one");
  EXPECT_EQ(gate, lumo::Gate::Of("HTTP://Gate.test:80"));
  EXPECT_NE(gate, lumo::Gate::Of("https://gate.test"));
  auto const first = gate->Enter(8);
  auto const second = gate->Enter(8);
  gate->NoteOverload(*first);
  gate->NoteOverload(*second);
  EXPECT_EQ(gate->Width(8), 2);
  EXPECT_EQ(gate->Enter(8), nullptr);
}

TEST(Gate, GrowsSlowlyWhileItIsUsedUp) {
  auto const gate = lumo::Gate::Of("http://growing.test");
  EXPECT_EQ(gate->Width(8), 4);
  EXPECT_EQ(gate->Width(2), 2);
  std::vector<std::unique_ptr<lumo::Gate::Place>> places;
  places.reserve(3);
  for (int i = 0; i < 3; ++i) places.push_back(gate->Enter(8));
  for (int i = 0; i < 100; ++i) gate->NoteSuccess();
  EXPECT_EQ(gate->Width(8), 4);  // nobody waited
  places.push_back(gate->Enter(8));
  for (int i = 0; i < 100; ++i) gate->NoteSuccess();
  EXPECT_EQ(gate->Width(8), 5);
}
