#include "tests/toolkit/Sandbox.h"

#include "sandbox/http/Server.h"
#include "sandbox/seed/Seed.h"

namespace {

struct Sandbox {
  Sandbox() : store(sandbox::OpenStore(":memory:", sandbox::Content::Full)), server(store) {
    lumo::ConnectOptions options;
    options.onCall = [this](lumo::CallEvent const& /*call*/) { ++calls; };
    link = std::make_unique<lumo::Connection>("http://127.0.0.1:" + std::to_string(server.Start(0)),
                                              options);
    materials = std::make_unique<lumo::TableInfo>(*link, "ENG_MATERIALS", "Materials");
  }
  ~Sandbox() { server.Stop(); }
  Sandbox(Sandbox const&) = delete;
  Sandbox& operator=(Sandbox const&) = delete;

  sandbox::Store store;
  sandbox::Server server;
  std::size_t calls = 0;
  std::unique_ptr<lumo::Connection> link;
  std::unique_ptr<lumo::TableInfo> materials;
};

std::unique_ptr<Sandbox> running;

/// Between calls the store is free.
std::string OfCurrent(char const* column, lumo::RecordId const& id) {
  return running->store
      .Only(
          std::string("SELECT ") + column + " FROM record WHERE history_id = ? AND is_current = 1",
          {std::to_string(id.identity)})
      .Text(0);
}

}  // namespace

void SandboxTest::SetUpTestSuite() { running = std::make_unique<Sandbox>(); }
void SandboxTest::TearDownTestSuite() { running.reset(); }

lumo::Connection& SandboxTest::Link() { return *running->link; }
std::size_t SandboxTest::Calls() { return running->calls; }
lumo::TableInfo& SandboxTest::Materials() { return *running->materials; }
std::string SandboxTest::GuidOf(lumo::RecordId const& id) { return OfCurrent("guid", id); }
std::string SandboxTest::HistoryGuidOf(lumo::RecordId const& id) {
  return OfCurrent("history_guid", id);
}
