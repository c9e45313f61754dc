#include "tests/networks/Setups.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <cstdlib>
#include <iostream>
#include <optional>

#include "cli/NextStep.h"

using testing::HasSubstr;
using testing::Not;

namespace {

/// Variables that are set as long as the object lives.
class Environment {
 public:
  explicit Environment(std::map<std::string, std::string> const& variables) {
    for (auto const& [name, value] : variables) {
      char const* const before = std::getenv(name.c_str());
      m_before[name] = before == nullptr ? std::nullopt : std::optional<std::string>(before);
      setenv(name.c_str(), value.c_str(), 1);
    }
  }
  ~Environment() {
    for (auto const& [name, value] : m_before) {
      if (value) {
        setenv(name.c_str(), value->c_str(), 1);
      } else {
        unsetenv(name.c_str());
      }
    }
  }
  Environment(Environment const&) = delete;
  Environment& operator=(Environment const&) = delete;

 private:
  std::map<std::string, std::optional<std::string>> m_before;
};

/// Prints what users come to see. Passwords and tokens of the set-ups that have some hold this
/// text.
void Say(std::string const& text) {
  std::cout << text << '\n';
  EXPECT_THAT(text, Not(HasSubstr("s3cret")));
}

void CheckError(Setup const& setup, lumo::Error const& error) {
  Say(std::string("  ") + error.what() + "\n  " + cli::NextStep(error.Hint()));
  Say("  (" + error.TransportText() + ")");
  EXPECT_STREQ(lumo::NameOf(error.Code()), lumo::NameOf(setup.code));
  EXPECT_EQ(error.Hint().code, setup.hint);
  EXPECT_THAT(error.what(), HasSubstr(setup.cause));
}

void CheckCall(Setup const& setup) {
  try {
    lumo::Client::Connect(setup.url, setup.options).Databases();
    ADD_FAILURE() << "the call succeeds";
  } catch (lumo::Error const& error) {
    CheckError(setup, error);
  }
}

void CheckDiagnosis(Setup const& setup) {
  lumo::Diagnosis const diagnosis = lumo::Diagnose(setup.url, setup.options);
  for (lumo::Finding const& finding : diagnosis.findings) {
    Say("    " + finding.stage + ": " + finding.text);
  }
  ASSERT_FALSE(diagnosis.findings.empty());
  ASSERT_TRUE(diagnosis.fault.has_value());
  lumo::Finding const& last = diagnosis.findings.back();
  std::string const next = cli::NextStep(last.hint);
  Say("    " + next);
  EXPECT_EQ(last.stage, setup.stage);
  EXPECT_EQ(last.state, lumo::Finding::State::Fault);
  EXPECT_THAT(last.text, HasSubstr(setup.cause));
  EXPECT_THAT(next, HasSubstr(setup.next));
  EXPECT_STREQ(lumo::NameOf(diagnosis.fault->Code()), lumo::NameOf(setup.code));
}

}  // namespace

lumo::ConnectOptions OneTry(lumo::Credentials const& credentials) {
  lumo::ConnectOptions options;
  options.credentials = credentials;
  options.retry.maxAttempts = 1;
  return options;
}

void CheckAll(std::vector<Setup> const& setups) {
  for (Setup const& setup : setups) {
    SCOPED_TRACE(setup.name);
    std::cout << setup.name << ":\n";
    Environment const environment(setup.environment);
    CheckCall(setup);
    CheckDiagnosis(setup);
  }
}
