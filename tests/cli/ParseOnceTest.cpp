#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "lumo/toolkit/Client.h"
#include "sandbox/http/Server.h"
#include "sandbox/seed/Seed.h"
#include "tests/cli/Command.h"
#include "tests/support/ParseCounter.h"

namespace {

/// Lines of the server's log that tell of a request; bodies are indented.
long RequestsIn(std::string const& log) {
  std::istringstream lines(log);
  long requests = 0;
  for (std::string line; std::getline(lines, line);) requests += line.rfind(' ', 0) == 0 ? 0 : 1;
  return requests;
}

}  // namespace

TEST_F(CommandTest, ReadsEachReplyToAReadWhileItIsParsed) {
  StartWithLog();
  lumo::ReadOptions options;
  options.chunkSize = 1;
  int const before = ParsedTexts();
  auto const table = lumo::Client::Connect(Url()).OpenTable("ENG_MATERIALS", "Materials");
  for (lumo::Record const& record : table.All().Read({}, options)) EXPECT_NE(record.Name(), "");
  EXPECT_GT(RequestsIn(Log()), 5);
  EXPECT_EQ(ParsedTexts() - before, 0) << "a reply was parsed again, as a whole tree";
}
