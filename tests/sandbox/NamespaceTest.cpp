// Two vendors in one process: every operation speaks the namespace of its session.

#include "sandbox/http/Server.h"
#include "sandbox/seed/Seed.h"
#include "tests/support/EveryOperation.h"

#include <gmock/gmock.h>

namespace {

/// A server that speaks a namespace, and a session with it.
class Vendor {
 public:
  explicit Vendor(std::string const& namespaceBase)
      : m_base(namespaceBase),
        m_store(sandbox::OpenStore(":memory:")),
        m_server(m_store, OptionsFor(namespaceBase)),
        m_url("http://127.0.0.1:" + std::to_string(m_server.Start(0))) {}

  /// Services that speak this vendor's namespace, with the server of that one.
  SmartPtr<LumoServiceLayerServices> ConnectTo(Vendor const& other) const {
    auto const session = LumoSession::CreateOne(other.m_url, nullptr);
    session->SetVendorNamespaceBase(m_base);
    session->SetActAsReadUser(HeaderVals::True);
    return {new LumoServiceLayerServices(session)};
  }

 private:
  static sandbox::ServerOptions OptionsFor(std::string const& namespaceBase) {
    sandbox::ServerOptions options;
    options.namespaceBase = namespaceBase;
    return options;
  }

  std::string m_base;
  sandbox::Store m_store;
  sandbox::Server m_server;
  std::string m_url;
};

}  // namespace

TEST(Namespaces, OfTwoVendorsLiveInOneProcess) {
  Vendor const first("http://first.example.com/a/");
  Vendor const second("urn:second");
  auto const toFirst = first.ConnectTo(first);
  auto const toSecond = second.ConnectTo(second);
  auto const astray = first.ConnectTo(second);
  int succeeded = 0;
  std::vector<OperationRow> const operations = EveryOperation();
  for (OperationRow const& row : operations) {
    auto const here = row.call(*toFirst).outcome;
    auto const there = row.call(*toSecond).outcome;
    EXPECT_EQ(here->ErrorText(), there->ErrorText());
    // An empty request may be refused for what it lacks, but only for that.
    EXPECT_THAT(here->GetFaultText(), testing::Not(testing::HasSubstr("xmlns"))) << row.operation;
    EXPECT_NE(here->GetFaultCode(), "a:ActionNotSupported") << row.operation;
    succeeded += here->Succeeded() ? 1 : 0;
    EXPECT_EQ(row.call(*astray).outcome->GetFaultCode(), "a:ActionNotSupported") << row.operation;
  }
  EXPECT_EQ(operations.size(), 30U);
  EXPECT_GE(succeeded, 10);
}
