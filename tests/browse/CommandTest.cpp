// What the command does around its page.

#include "cli/browse/Command.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "cli/Failure.h"
#include "tests/browse/Page.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

lumo::Client NoServer() { return lumo::Client::Connect("http://127.0.0.1:1"); }

/// Gives standard output to another buffer meanwhile.
class Printed {
 public:
  explicit Printed(std::streambuf* buffer) : m_before(std::cout.rdbuf(buffer)) {}
  ~Printed() {
    std::cout.rdbuf(m_before);
    std::cout.clear();
  }
  Printed(Printed const&) = delete;
  Printed& operator=(Printed const&) = delete;

 private:
  std::streambuf* m_before;
};

TEST(Command, EndsWhenItsAddressCannotBePrinted) {
  Printed const nowhere(nullptr);
  try {
    cli::browse::Run(NoServer(), {}, [] { return true; }, {});
    FAIL();
  } catch (cli::Failure const& failure) {
    EXPECT_EQ(failure.Code(), cli::ExitCode::PartlyDone);
  }
}

TEST(Command, GivesABrowserASessionOfItsOwnAndNoPasswords) {
  auto const folder =
      std::filesystem::temp_directory_path() / ("browse" + std::to_string(getpid()));
  std::filesystem::create_directory(folder);
  auto const told = folder / "told";
  std::ofstream(folder / "xdg-open") << "#!/bin/sh\n(env; ps -o sid= $$; echo end) >" << told
                                     << ".part\nmv " << told << ".part " << told << "\n";
  std::filesystem::permissions(folder / "xdg-open", std::filesystem::perms::owner_all);
  std::string const path = std::getenv("PATH");
  setenv("PATH", (folder.string() + ":" + path).c_str(), 1);
  setenv("LUMO_PASSWORD", "secret", 1);
  setenv("LUMO_PROXY_PASSWORD", "secret", 1);
  setenv("LUMO_USER", "ann", 1);
  std::ostringstream out;
  {
    Printed const here(out.rdbuf());
    cli::browse::BrowseOptions options;
    options.opens = true;
    options.idleSeconds = 20;
    cli::browse::Run(NoServer(), options, [&] { return std::filesystem::exists(told); }, {});
  }
  setenv("PATH", path.c_str(), 1);
  for (char const* const name : {"LUMO_PASSWORD", "LUMO_PROXY_PASSWORD", "LUMO_USER"}) {
    unsetenv(name);
  }
  std::stringstream text;
  text << std::ifstream(told).rdbuf();
  EXPECT_THAT(text.str(), AllOf(HasSubstr("LUMO_USER=ann"), Not(HasSubstr("secret"))));
  EXPECT_THAT(text.str(), Not(HasSubstr(std::to_string(getsid(0)) + "\nend")));
  EXPECT_THAT(text.str(), HasSubstr("\nend"));
  std::filesystem::remove_all(folder);
}

}  // namespace
