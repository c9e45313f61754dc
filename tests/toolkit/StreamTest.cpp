#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <locale>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "lumo/Toolkit.h"
#include "tests/support/TinyService.h"
#include "tests/toolkit/Support.h"

using lumo::ErrorCode;
using std::chrono::milliseconds;
using testing::HasSubstr;

namespace {

lumo::Client ClientOf(TinyService const& service, int maxConcurrency = 4) {
  lumo::ConnectOptions options;
  options.credentials = lumo::Anonymous{};
  options.maxConcurrency = maxConcurrency;
  options.stall = milliseconds(150);
  options.retry.initialBackoff = milliseconds(1);
  options.retry.maxBackoff = milliseconds(4);
  return lumo::Client::Connect(service.Url(), options);
}

lumo::Selection AllOf(TinyService const& service, int maxConcurrency = 4) {
  return ClientOf(service, maxConcurrency).OpenTable("db", "rec").All();
}

/// What a record says, as a line.
std::string LineOf(lumo::Record const& record) {
  std::ostringstream line;
  line.imbue(std::locale::classic());
  line.precision(17);
  line << record.Id().identity << ' ' << record.Folder() << ' ' << record.Name() << ' '
       << record.FullName();
  for (lumo::Value const& value : record.Values()) {
    line << '|';
    if (auto const* const text = std::get_if<std::string>(&value)) line << *text;
    if (auto const number = lumo::NumberIn(value)) line << *number << lumo::UnitIn(value);
    if (auto const* const flag = std::get_if<bool>(&value)) line << *flag;
  }
  return line.str();
}

std::vector<std::string> LinesOf(lumo::RecordStream stream) {
  std::vector<std::string> lines;
  for (lumo::Record const& record : stream) lines.push_back(LineOf(record));
  return lines;
}

/// How many records a trial has: few in the suite, LUMO_TEST_RECORDS by hand.
int Many() {
  char const* const wanted = std::getenv("LUMO_TEST_RECORDS");
  return wanted == nullptr ? 1000 : std::atoi(wanted);
}

int Moments() {
  char const* const wanted = std::getenv("LUMO_TEST_MOMENTS");
  return wanted == nullptr ? 20 : std::atoi(wanted);
}

/// Every tenth call meets something else.
bool EveryTenth(RawConnection& connection, int call, std::string const&, std::string const&) {
  if (call % 10 != 0) return false;
  switch (call / 10 % 4) {
    case 0: connection.Reset(); break;
    case 1: connection.Send(HttpReply("503 Busy", "", "Connection: close\r\n")); break;
    case 2: connection.Send("HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\n<s:Envel"); break;
    default: connection.WaitForClose();
  }
  return true;
}

bool Stall(RawConnection& connection) {
  connection.WaitForClose();
  return true;
}

}  // namespace

TEST(Stream, ReadsTheSameWithAnyNumberOfWorkersWhateverGoesWrong) {
  TinyService const calm(Many());
  std::vector<std::string> const expected = LinesOf(AllOf(calm, 1).Read());
  ASSERT_EQ(expected.size(), static_cast<std::size_t>(Many()));
  EXPECT_EQ(expected[11], "12 F0 R12 Record R12|Record 12|12.125kg/m^3|12.25MPa|12|1");
  EXPECT_EQ(expected[6], "7 F0 R7 Record R7|Record 7||7.25MPa|7|0");
  for (int const workers : {1, 8}) {
    TinyService const service(Many(), EveryTenth);
    EXPECT_EQ(LinesOf(AllOf(service, workers).Read()), expected);
    EXPECT_LE(service.MostAtOnce(), workers + 1) << "a stalled call may still show";
  }
}

TEST(Stream, HandsChunksOverAsTheyComeWhenOrderIsOfNoMatter) {
  TinyService const service(400, EveryTenth);
  lumo::ReadOptions options;
  options.isOrdered = false;
  options.chunkSize = 20;
  std::vector<std::string> const lines = LinesOf(AllOf(service).Read({"name"}, options));
  EXPECT_EQ(lines.size(), 400U);
  EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()).size(), 400U);
}

TEST(Stream, TellsOfItsProgressOnTheReadersThread) {
  TinyService const service(500, EveryTenth);
  std::thread::id const me = std::this_thread::get_id();
  std::atomic<bool> isElsewhere{false};
  std::vector<lumo::Progress> told;
  lumo::ConnectOptions connect;
  connect.retry.initialBackoff = milliseconds(1);
  connect.stall = milliseconds(150);
  int calls = 0;
  connect.onCall = [&](lumo::CallEvent const&) {
    ++calls;
    isElsewhere = isElsewhere || std::this_thread::get_id() != me;
  };
  lumo::ReadOptions options;
  options.chunkSize = 50;
  options.onProgress = [&](lumo::Progress const& progress) {
    told.push_back(progress);
    isElsewhere = isElsewhere || std::this_thread::get_id() != me;
  };
  auto const client = lumo::Client::Connect(service.Url(), connect);
  LinesOf(client.OpenTable("DB", "Records").All().Read({"Density"}, options));
  EXPECT_FALSE(isElsewhere);
  EXPECT_GE(calls, service.Calls() - 1);
  ASSERT_GE(told.size(), 10U);
  EXPECT_TRUE(std::is_sorted(told.begin(), told.end(), [](auto const& a, auto const& b) {
    return a.recordsDone < b.recordsDone || a.bytes < b.bytes;
  }));
  EXPECT_EQ(told.back().recordsDone, 500U);
  EXPECT_GT(told.back().bytes, 500U * 100);
  EXPECT_LE(told.back().chunk, 50U);  // fewer where the machine was too busy to answer in time
  EXPECT_GE(told.back().chunk, 1U);
}

TEST(Stream, KeepsWhatWasReadBeforeAFailureAndSaysHowMuch) {
  TinyService const service(500, [](RawConnection& connection, int, std::string const& operation,
                                    std::string const& request) {
    if (operation != "GetRecordAttributesByRef" || RecordsIn(request)[0] < 201) return false;
    return connection.Send(HttpReply("403 No", "", "Connection: close\r\n"));
  });
  lumo::ReadOptions options;
  options.chunkSize = 50;
  lumo::RecordStream stream = AllOf(service).Read({"Density"}, options);
  std::size_t count = 0;
  lumo::Error const error = ErrorOf([&] {
    for (lumo::Record const& record : stream) count += record.Id().identity <= 200;
  });
  EXPECT_EQ(count, 200U);
  EXPECT_EQ(error.Code(), ErrorCode::PermissionDenied);
  EXPECT_EQ(error.RecordsDone(), 200U);
  EXPECT_THAT(error.what(), HasSubstr("(after 200 records)"));
  std::vector<lumo::Record> more;
  EXPECT_FALSE(stream.NextChunk(more));
}

TEST(Stream, HalvesAChunkThatTakesTooLongOrIsTooLarge) {
  for (bool const stalls : {true, false}) {
    TinyService const service(100, [&](RawConnection& connection, int, std::string const& operation,
                                       std::string const& request) {
      if (operation != "GetRecordAttributesByRef" || RecordsIn(request).size() <= 30) return false;
      if (stalls) return Stall(connection);
      return connection.Send(HttpReply("413 Large", "", "Connection: close\r\n"));
    });
    std::vector<std::string> const lines = LinesOf(AllOf(service, 2).Read());
    EXPECT_EQ(lines.size(), 100U);
    EXPECT_LE(service.Reads(), 9) << "the size is kept for what follows";
  }
}

TEST(Stream, ReadsAheadOfASlowReaderOnlySoFar) {
  TinyService const service(2000);
  lumo::ReadOptions options;
  options.chunkSize = 20;
  lumo::RecordStream stream = AllOf(service, 2).Read({"Name"}, options);
  std::vector<lumo::Record> chunk;
  ASSERT_TRUE(stream.NextChunk(chunk));
  std::this_thread::sleep_for(milliseconds(300));
  EXPECT_LE(service.Reads(), 1 + 2 * 3);
}

TEST(Stream, LeavesTheLimitOfCallsToTheServerWhole) {
  TinyService const service(1000, [](RawConnection&, int, std::string const&, std::string const&) {
    std::this_thread::sleep_for(milliseconds(3));
    return false;
  });
  lumo::Selection const all = AllOf(service, 3);
  lumo::ReadOptions options;
  options.chunkSize = 25;
  std::thread other([&] { LinesOf(all.Read({"Name"}, options)); });
  LinesOf(AllOf(service, 3).Read({"Name"}, options));
  other.join();
  EXPECT_LE(service.MostAtOnce(), 3);
  EXPECT_GE(service.MostAtOnce(), 2);
}

TEST(Stream, GivesWayToAnOverloadedServer) {
  std::atomic<int> refused{0};
  TinyService const service(
      2000, [&](RawConnection& connection, int, std::string const& operation, std::string const&) {
        if (operation != "GetRecordAttributesByRef" || refused >= 2) return false;
        ++refused;
        return connection.Send(HttpReply("503 Busy", "", "Connection: close\r\n"));
      });
  int narrowest = 9;
  lumo::ReadOptions options;
  options.chunkSize = 50;
  options.onProgress = [&](lumo::Progress const& p) { narrowest = std::min(narrowest, p.workers); };
  EXPECT_EQ(LinesOf(AllOf(service).Read({"Name"}, options)).size(), 2000U);
  EXPECT_LE(narrowest, 2);
}

TEST(Stream, EndsAtAnyMomentWithinASecond) {
  TinyService const service(
      100000, [](RawConnection& connection, int call, std::string const&, std::string const&) {
        if (call % 5 == 0) return Stall(connection);
        if (call % 7 == 0) connection.Send(HttpReply("503 Busy", "", "Connection: close\r\n"));
        return call % 7 == 0;
      });
  std::minstd_rand random(1);
  lumo::ConnectOptions connect;
  connect.retry.maxAttempts = 100;
  lumo::Selection const all =
      lumo::Client::Connect(service.Url(), connect).OpenTable("DB", "Records").All();
  for (int i = 0; i < Moments(); ++i) {
    lumo::ReadOptions options;
    auto stream = std::make_unique<lumo::RecordStream>(all.Read({"Name", "Density"}, options));
    milliseconds const moment(random() % 400);
    auto ended = std::chrono::steady_clock::now();
    if (i % 2 == 0) {  // cancelled by another thread
      std::thread canceller([&] {
        std::this_thread::sleep_for(moment);
        ended = std::chrono::steady_clock::now();
        options.cancel.Cancel();
      });
      EXPECT_EQ(ErrorOf([&] {
                  for (lumo::Record const& record : *stream) (void)record;
                }).Code(),
                ErrorCode::Cancelled);
      canceller.join();
    } else {  // left
      auto const until = ended + moment;
      lumo::ReadOptions watch;
      std::vector<lumo::Record> chunk;
      std::thread canceller([&] {
        std::this_thread::sleep_until(until);
        options.cancel.Cancel();
      });
      try {
        while (std::chrono::steady_clock::now() < until && stream->NextChunk(chunk)) {
        }
      } catch (lumo::Error const&) {
      }
      canceller.join();
      ended = std::chrono::steady_clock::now();
      stream.reset();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - ended, std::chrono::seconds(1)) << moment.count();
  }
}

TEST(Stream, EndsWhenItsTimeIsOver) {
  TinyService const service(1000, [](RawConnection& connection, int call, std::string const&,
                                     std::string const&) { return call > 6 && Stall(connection); });
  lumo::ReadOptions options;
  options.timeLimit = milliseconds(400);
  lumo::ConnectOptions connect;
  auto const all = lumo::Client::Connect(service.Url(), connect).OpenTable("DB", "Records").All();
  auto const begin = std::chrono::steady_clock::now();
  EXPECT_EQ(ErrorOf([&] { LinesOf(all.Read({"Name"}, options)); }).Code(), ErrorCode::Timeout);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, milliseconds(1400));
}

TEST(Record, IsFoundByNameInAnyCaseAndConvertsItsFigures) {
  TinyService const service(20);
  lumo::Table const table = ClientOf(service).OpenTable("Trials", "Records");
  lumo::Record const record =
      table.All().WithIds({{"DB", 12, ""}}).Read({"dens", "Good"}).begin().operator*();
  EXPECT_EQ(record.Folder(), "F0");
  EXPECT_EQ(record.Name(), "R12");
  EXPECT_EQ(lumo::NumberIn(record["Density"]), 12.125);
  EXPECT_EQ(lumo::NumberIn(record["DENSITY"]), 12.125);
  EXPECT_EQ(lumo::NumberIn(record["dens"]), 12.125);
  EXPECT_EQ(record.Number("Density", "kg/m^3"), 12.125);
  EXPECT_EQ(record.Number("Good", "kg/m^3"), std::nullopt);
  EXPECT_EQ(ErrorOf([&] { record["Strength"]; }).Code(), ErrorCode::InvalidArgument);
  EXPECT_EQ(ErrorOf([&] { record.Number("Density", "furlong"); }).Code(),
            ErrorCode::InvalidArgument);
}

TEST(Partition, GoesAsALineAndIsReadElsewhere) {
  TinyService const service(250);
  auto const parts = AllOf(service).Partitions(100, {"Name", "Density"});
  ASSERT_EQ(parts.size(), 3U);
  EXPECT_EQ(parts[2].ToText(), "lumo/1 " + service.Url() + " DB Records Name,Density 201-250");
  std::vector<std::string> lines;
  for (lumo::Partition const& part : parts) {
    auto const read = lumo::Partition::FromText(part.ToText() + "\n");
    for (auto const& line : LinesOf(ClientOf(service).Read(read))) lines.push_back(line);
  }
  EXPECT_EQ(lines, LinesOf(AllOf(service).Read({"Name", "Density"})));
}

TEST(Partition, KeepsWhateverNamesHold) {
  lumo::Partition part;
  part.server = "https://server:8443/a b";
  part.database = "D,B";
  part.table = "50% off";
  part.attributes = {"Young's modulus", "a,b", "caf\xC3\xA9 -"};
  part.records = {{"D,B", 7, ""}, {"D,B", 5, ""}, {"D,B", 6, ""}, {"D,B", 0, "guid-1"}};
  std::string const text = part.ToText();
  EXPECT_EQ(text,
            "lumo/1 https://server:8443/a%20b D%2CB 50%25%20off "
            "Young%27s%20modulus,a%2Cb,caf%C3%A9%20%2D 7,5-6,=guid-1");
  EXPECT_EQ(lumo::Partition::FromText(text).ToText(), text);
  for (char const* const broken :
       {"", "lumo/2 a b c d 1", "lumo/1 a b c", "lumo/1 a b c d", "lumo/1 a b c d 5-4",
        "lumo/1 a b c d x", "lumo/1 a% b c d 1", "lumo/1 a b c d -5", "lumo/1 a b c d 1,,2"}) {
    EXPECT_EQ(ErrorOf([&] { lumo::Partition::FromText(broken); }).Code(),
              ErrorCode::InvalidArgument)
        << broken;
  }
}
