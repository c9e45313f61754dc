// All 30 operations, from the service's getter over the wire to the filled response.

#include "tests/support/EveryOperation.h"

#include <gmock/gmock.h>

#include "tests/support/RawServer.h"

using testing::HasSubstr;

class OperationTest : public testing::TestWithParam<OperationRow> {};

TEST_P(OperationTest, IsSentToItsServiceAndReadFromItsElement) {
  OperationRow const& row = GetParam();
  RawServer const server(Replies({HttpReply("200 OK", Envelope(row.reply))}));
  Called const called = row.call(*Connect(server.Url()));
  EXPECT_EQ(called.outcome->ErrorText(), "");
  EXPECT_EQ(called.entries, 1U);
  ASSERT_EQ(server.Requests().size(), 1U);
  std::string const request = server.Requests()[0];
  std::string const base = LumoSession::GetVendorNamespaceBase() + "16/01/" + row.service;
  EXPECT_THAT(request, HasSubstr("POST /" + row.service + ".svc HTTP/1.1\r\n"));
  EXPECT_THAT(request, HasSubstr("\r\nSOAPAction: " + base + "/" + row.operation + "Request\r\n"));
  std::string const body =
      row.content.empty() ? "<soapenv:Body/>" : "<soapenv:Body>" + row.content + "</soapenv:Body>";
  EXPECT_THAT(request, HasSubstr("=\"" + base + "\"><soapenv:Header/>" + body));
}

INSTANTIATE_TEST_SUITE_P(All, OperationTest, testing::ValuesIn(EveryOperation()),
                         [](auto const& row) { return row.param.operation; });
