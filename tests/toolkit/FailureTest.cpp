#include <gmock/gmock.h>

#include <ostream>
#include <string>

#include "lumo/toolkit/Connection.h"
#include "tests/support/RawServer.h"
#include "tests/support/Session.h"
#include "tests/toolkit/Support.h"

using lumo::ErrorCode;
using lumo::HintCode;

namespace {

SmartPtr<GetTablesResponse> Tables(lumo::Connection& connection) {
  return connection.Ask<GetTablesResponse>([&](auto* into) {
    connection.Browse()->GetGetTablesImpl()->RequestTables(TablesOf("K"), into);
  });
}

/// A reply of a server and what a caller is told of it.
struct Case {
  char const* name;
  std::string reply;
  ErrorCode code;
  int status;
  HintCode hint;
  std::string text;
};

std::ostream& operator<<(std::ostream& out, Case const& one) { return out << one.name; }

std::string const kFault = Envelope(
    "<s:Fault><faultcode>s:Server</faultcode><faultstring>No such\n table</faultstring></s:Fault>");

class Failure : public testing::TestWithParam<Case> {};

}  // namespace

TEST_P(Failure, IsToldByCodeAndHint) {
  Case const& one = GetParam();
  RawServer const server(Replies({one.reply}));
  lumo::ConnectOptions options;
  options.retry.maxAttempts = 1;
  lumo::Connection connection(server.Url(), options);
  lumo::Error const error = ErrorOf([&] { Tables(connection); });
  EXPECT_STREQ(lumo::NameOf(error.Code()), lumo::NameOf(one.code));
  EXPECT_EQ(error.Operation(), "GetTables");
  EXPECT_EQ(error.HttpStatus(), one.status);
  EXPECT_EQ(error.Hint().code, one.hint);
  EXPECT_THAT(error.what(), testing::HasSubstr(one.text));
}

INSTANTIATE_TEST_SUITE_P(
    OfReply, Failure,
    testing::Values(
        Case{"Fault", HttpReply("500 No", kFault), ErrorCode::ServerFault, 500, HintCode::None,
             "No such table"},
        Case{"NoSoap500", HttpReply("500 No", "<html/>"), ErrorCode::ServerFault, 500,
             HintCode::None, "500"},
        Case{"NoUser", HttpReply("401 No", ""), ErrorCode::Unauthenticated, 401, HintCode::LogOn,
             "log-on"},
        Case{"NoRights", HttpReply("403 No", ""), ErrorCode::PermissionDenied, 403,
             HintCode::AskForRights, "permit"},
        Case{"WrongPath", HttpReply("404 No", ""), ErrorCode::NotUnderstood, 404,
             HintCode::CheckAddress, "404"},
        Case{"TooLarge", HttpReply("413 No", ""), ErrorCode::ServerFault, 413, HintCode::SendLess,
             "too large"},
        Case{"LogOnPage", HttpReply("302 Found", "", "Location: https://log.on/\r\n"),
             ErrorCode::NotUnderstood, 302, HintCode::FollowRedirect, "https://log.on/"},
        Case{"HtmlPage", HttpReply("200 OK", "<!DOCTYPE html><html><body>Hello"),
             ErrorCode::NotUnderstood, 200, HintCode::CheckAddress, "<!DOCTYPE html>"},
        Case{"BadValue",
             HttpReply(
                 "200 OK",
                 Envelope("<GetTablesResponse><tableDetails><table><attributeReferences>"
                          "<attribute><b:attributeIdentity>x</b:attributeIdentity></attribute></"
                          "attributeReferences></table></tableDetails></GetTablesResponse>")),
             ErrorCode::NotUnderstood, 200, HintCode::None, "value"}),
    [](auto const& one) { return std::string(one.param.name); });
