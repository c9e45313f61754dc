#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "cli/Commands.h"
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

TEST_F(CommandTest, ReadsEachReplyToGetWhileItIsParsed) {
  std::ostringstream log;
  sandbox::ServerOptions serverOptions;
  serverOptions.log = &log;
  Start(sandbox::Content::Minimal, serverOptions);
  cli::Context context;
  context.server.url = Url();
  context.output.file = File("out.csv");
  context.output.format = cli::Format::Csv;
  context.isQuiet = true;
  context.chunk = 1;
  cli::GetOptions options;
  options.what.database = "ENG_MATERIALS";
  options.what.table = "Materials";
  int const before = ParsedTexts();
  Get(context, options);
  EXPECT_GT(RequestsIn(log.str()), 5);
  EXPECT_EQ(ParsedTexts() - before, 0) << "a reply was parsed again, as a whole tree";
}
