// Log-on by ticket against a real realm and web server; scripts/with-kerberos runs these.
#include <algorithm>
#include <cstdlib>

#include "tests/networks/Networks.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

constexpr char kNoTickets[] = "FILE:/nowhere";

/// The current user's tickets are in that cache from now on.
void UseTickets(std::string const& cache) { setenv("KRB5CCNAME", cache.c_str(), 1); }

class Kerberos : public testing::Test {
 protected:
  ~Kerberos() override { UseTickets(m_tickets); }
  std::string const m_tickets = Told("KRB5CCNAME");
  std::string const m_url = Told("LUMO_URL");
  std::string const m_either = Told("RIG_EITHER_URL");
};

std::ptrdiff_t Count(std::vector<std::string> const& lines, std::string const& text) {
  return std::count_if(lines.begin(), lines.end(), [&text](std::string const& line) {
    return line.find(text) != std::string::npos;
  });
}

}  // namespace

TEST_F(Kerberos, AThousandCallsNeedOneHandshakeAConnection) {
  auto const services = Connect(m_url, Ticket());
  int fine = 0;
  for (int i = 0; i < 1000; ++i) {  // no other test uses this service
    GetAvailableExportersResponse response;
    services->GetEngineeringDataService()->GetGetAvailableExportersImplPtr()->GetAvailableExporters(
        GetAvailableExportersRequest::CreateOne(), &response);
    fine += response.GetServiceLayerResponse()->GetResponseCode() == 200 ? 1 : 0;
  }
  EXPECT_EQ(fine, 1000);
  auto const requests = LinesWith("EngineeringData", "access.log", 1000);
  auto const connections = Count(requests, " 0 ");
  EXPECT_THAT(requests, SizeIs(1000));
  EXPECT_LE(connections, 10);  // the server ends one after a hundred requests
  EXPECT_EQ(Count(requests, " Negotiate "), connections);
}

TEST_F(Kerberos, AnImportOfThreeMegabytesReachesTheServerOnce) {
  EXPECT_EQ(Import(*Connect(m_url, Ticket()), 2'300'000), 200);
  EXPECT_THAT(LinesWith("Z SetRecordAttributes ", "requests.log", 1),
              ElementsAre(HasSubstr(" 200 in 30")));
}

TEST_F(Kerberos, WithoutAUsableTicketTheServerRefuses) {
  UseTickets(kNoTickets);
  EXPECT_THAT(Asked(*Connect(m_url, Ticket())), IsRefused("No credentials were supplied"));
  UseTickets(Told("RIG_EXPIRED_TICKET"));
  EXPECT_THAT(Asked(*Connect(m_url, Ticket())), IsRefused("Ticket expired"));
  UseTickets(m_tickets);
  std::string nameless = m_url;  // the realm has no service of this name
  nameless.replace(nameless.find("localhost"), 9, "127.0.0.1");
  EXPECT_THAT(Asked(*Connect(nameless, Ticket())),
              IsRefused("Server HTTP/127.0.0.1@EXAMPLE.COM not found in Kerberos database"));
}

TEST_F(Kerberos, TicketGoesBeforeThePassword) {
  auto const services = Connect(m_either, User(kWrongPassword));
  services->GetSession()->ApplyAuthenticationModule(Ticket());
  EXPECT_EQ(Read(*services), 200);
  EXPECT_EQ(Read(*services), 200);  // this server wants to see the ticket each time
}

TEST_F(Kerberos, PasswordStepsInWhereThereIsNoTicket) {
  UseTickets(kNoTickets);
  auto const services = Connect(m_either, User());
  services->GetSession()->ApplyAuthenticationModule(Ticket());
  EXPECT_EQ(Read(*services), 200);
  EXPECT_EQ(Import(*services), 200);
  EXPECT_THAT(LinesWith(" Basic POST /DataImport.svc", "access.log", 1), SizeIs(1));
  EXPECT_THAT(LinesWith("401 0 - POST /DataImport.svc", "access.log"), IsEmpty());  // remembered
  EXPECT_EQ(Read(*Connect(m_url, User())), 401);  // where only a ticket would do
}

TEST_F(Kerberos, WrongPasswordIsRefused) {
  EXPECT_EQ(Read(*Connect(m_either, User(kWrongPassword))), 401);
}

// Runs with a clock that is 20 minutes fast. The realm minds it, or, where a ticket for the server
// is there already, the server, whose answer has a token in it.
TEST(KerberosClockOff, IsRefused) {
  auto const message = Asked(*Connect(Told("LUMO_URL"), Ticket()));
  EXPECT_THAT(message, IsRefused("Clock skew too great"));
  EXPECT_EQ(message->GetReport()->logOn.offered.at(0), "Negotiate");
}
