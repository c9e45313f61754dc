// Log-on by NTLM against a server that checks each proof; scripts/with-ntlm runs these.
#include "tests/networks/Networks.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

std::string const kImport = "POST /DataImport.svc";

SmartPtr<ILumoSLAuthModule> InDomain(std::string const& user, std::string const& password) {
  return LumoSLAuth_Authenticated::CreateOne("WORK", user, password);
}
SmartPtr<LumoServiceLayerServices> ConnectAnn(std::string const& password = RigPassword()) {
  return Connect(Told("LUMO_URL"), InDomain("ann", password));
}

}  // namespace

TEST(Ntlm, ProofIsRightAndHoldsForTheConnection) {
  auto const services = ConnectAnn();
  for (int i = 0; i < 10; ++i) EXPECT_EQ(Read(*services), 200);
  EXPECT_THAT(LinesWith("", "proxy.log", 1), ElementsAre("proof of WORK\\ann: right"));
  EXPECT_THAT(LinesWith("NTLM POST", "access.log", 2), SizeIs(2));
  EXPECT_THAT(LinesWith("200 ", "access.log", 10), SizeIs(10));
}

TEST(Ntlm, AnImportOfThreeMegabytesReachesTheServerOnce) {
  EXPECT_EQ(Import(*ConnectAnn(), 2'300'000), 200);
  EXPECT_THAT(LinesWith("Z SetRecordAttributes ", "requests.log", 1),
              ElementsAre(HasSubstr(" 200 in 30")));
}

TEST(Ntlm, AWrongPasswordIsRefusedAfterOneTry) {
  std::size_t const before = LinesWith("wrong", "proxy.log").size();
  EXPECT_EQ(Asked(*ConnectAnn(kWrongPassword))->GetStatusCode(), 401);
  EXPECT_THAT(LinesWith("wrong", "proxy.log", before + 1), SizeIs(before + 1));
}

TEST(Ntlm, PasswordStepsInWhereThereIsNoTicket) {
  auto const services = ConnectAnn();
  services->GetSession()->ApplyAuthenticationModule(Ticket());
  EXPECT_EQ(Import(*services), 200);
}

// A limit of libcurl.
TEST(Ntlm, APasswordOutsideAsciiIsRefused) {
  std::string const password = LinesWith("", "umlaut").at(0);
  auto const message = Asked(*Connect(Told("LUMO_URL"), InDomain("uma", password)));
  EXPECT_EQ(message->GetStatusCode(), 401);
}
