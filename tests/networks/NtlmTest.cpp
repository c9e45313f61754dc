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
  auto const message = Asked(*ConnectAnn(kWrongPassword));
  EXPECT_THAT(message, IsRefused(""));
  EXPECT_THAT(message->GetReport()->logOn.offered, ElementsAre("Negotiate", "NTLM"));
  EXPECT_EQ(message->GetReport()->logOn.used, "NTLM");
  EXPECT_THAT(LinesWith("wrong", "proxy.log", before + 1), SizeIs(before + 1));
}

TEST(Ntlm, PasswordStepsInWhereThereIsNoTicket) {
  auto const services = ConnectAnn();
  services->GetSession()->ApplyAuthenticationModule(Ticket());
  EXPECT_EQ(Import(*services), 200);
}

TEST(Ntlm, PasswordMayBeInLatin1) {
  auto const services = Connect(Told("LUMO_URL"), InDomain("uma", LinesWith("", "umlaut").at(0)));
  EXPECT_EQ(Import(*services), 200);
  EXPECT_THAT(LinesWith("uma: wrong", "proxy.log"), IsEmpty());
}

// Servers count wrong proofs and lock the account in the end.
TEST(Ntlm, NoProofThatMustBeWrongGoesOut) {
  std::size_t const proofs = LinesWith("", "proxy.log").size();
  for (auto const& logOn :
       {InDomain("eva", LinesWith("", "euro").at(0)), InDomain("j\u00f6rg", RigPassword())}) {
    EXPECT_THAT(Asked(*Connect(Told("LUMO_URL"), logOn)),
                IsRefused("NTLM: libcurl cannot prove a password outside Latin-1 or a user"));
  }
  EXPECT_THAT(LinesWith("", "proxy.log"), SizeIs(proofs));
}
