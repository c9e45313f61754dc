// Certificates and proxies, against real web servers; scripts/with-tls runs these.
#include <cstdlib>

#include "tests/networks/Networks.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

HttpTransportSettings WithCa() {
  HttpTransportSettings settings;
  settings.caFile = Told("RIG") + "/ca.pem";
  return settings;
}

HttpTransportSettings WithCertificate(std::string const& certificate, std::string const& key) {
  HttpTransportSettings settings = WithCa();
  settings.clientCertificateFile = Told("RIG") + "/" + certificate;
  settings.clientKeyFile = Told("RIG") + "/" + key;
  return settings;
}

HttpTransportSettings WithProxy(std::string const& proxy) {
  HttpTransportSettings settings = WithCa();
  settings.proxy = proxy;
  return settings;
}
std::string ProxyOf(std::string const& password) {
  return "http://ann:" + password + "@" + Told("RIG_PROXY");
}

SmartPtr<LumoServiceLayerServices> ConnectTo(std::string const& variable,
                                             HttpTransportSettings const& settings) {
  return Connect(Told(variable), LumoSLAuth_Annonymous::CreateOne(), settings);
}
/// What is told of a GET, which fails for that reason; the words alone.
SmartPtr<HttpReport> Failing(eHttpFailure why, std::string const& variable,
                             HttpTransportSettings const& settings) {
  auto report = Asked(*ConnectTo(variable, settings))->GetReport();
  EXPECT_EQ(report->failure, why);
  return report;
}
std::string TlsError(std::string const& variable, HttpTransportSettings const& settings) {
  return Failing(eHttpFailure_Tls, variable, settings)->error;
}

}  // namespace

TEST(Tls, APrivateAuthorityIsTrustedOnceItsFileIsGiven) {
  EXPECT_EQ(Read(*ConnectTo("LUMO_URL", WithCa())), 200);
  EXPECT_THAT(TlsError("LUMO_URL", {}), HasSubstr("unable to get local issuer certificate"));
  HttpTransportSettings missing;
  missing.caFile = "/nowhere/ca.pem";
  EXPECT_THAT(TlsError("LUMO_URL", missing), HasSubstr("certificate file: /nowhere/ca.pem"));
}

TEST(Tls, BadCertificatesAreRefused) {
  EXPECT_THAT(TlsError("RIG_EXPIRED_URL", WithCa()), HasSubstr("certificate has expired"));
  EXPECT_THAT(TlsError("RIG_WRONG_HOST_URL", WithCa()),
              HasSubstr("no alternative certificate subject name matches target host name"));
}

TEST(Tls, TheWrongSchemeIsSeen) {
  std::string plain = Told("RIG_PLAIN_URL");
  plain.replace(0, 4, "https");
  setenv("RIG_ODD_URL", plain.c_str(), 1);
  EXPECT_THAT(TlsError("RIG_ODD_URL", {}), HasSubstr("wrong version number"));
  std::string odd = Told("LUMO_URL");
  setenv("RIG_ODD_URL", odd.replace(0, 5, "http").c_str(), 1);
  auto const reply = Asked(*ConnectTo("RIG_ODD_URL", {}));
  EXPECT_EQ(reply->GetStatusCode(), 400);
  EXPECT_THAT(reply->GetResponseBuffer()->GetBytes(), HasSubstr("plain HTTP"));
}

TEST(Tls, AServerThatWantsACertificateGetsIt) {
  EXPECT_EQ(Read(*ConnectTo("RIG_CLIENT_URL", WithCertificate("client.pem", "client.key"))), 200);
  EXPECT_THAT(TlsError("RIG_CLIENT_URL", WithCa()), HasSubstr("alert certificate required"));
  EXPECT_THAT(TlsError("RIG_CLIENT_URL", WithCertificate("nothing.pem", "client.key")),
              HasSubstr("/nothing.pem"));
  EXPECT_THAT(TlsError("RIG_CLIENT_URL", WithCertificate("client.pem", "web.key")),
              HasSubstr("/web.key"));
}

TEST(Tls, AnImportReachesTheServerOnce) {
  std::size_t const before = LinesWith("POST /DataImport", "access.log").size();
  EXPECT_EQ(Import(*ConnectTo("RIG_CLIENT_URL", WithCertificate("client.pem", "client.key"))), 200);
  EXPECT_THAT(LinesWith("POST /DataImport", "access.log", before + 1), SizeIs(before + 1));
}

TEST(Proxy, TunnelsToTheServerOverHttps) {
  auto const services = ConnectTo("RIG_FAR_URL", WithProxy(ProxyOf(RigPassword())));
  std::size_t const before = LinesWith("Z SetRecordAttributes", "requests.log").size();
  EXPECT_EQ(Import(*services, 3'000'000), 200);
  EXPECT_THAT(LinesWith("Z SetRecordAttributes", "requests.log", before + 1), SizeIs(before + 1));
}

TEST(Proxy, OfTheEnvironmentIsUsed) {
  std::string const password = RigPassword();
  setenv("https_proxy", ProxyOf(password).c_str(), 1);
  setenv("http_proxy", ProxyOf(password).c_str(), 1);
  EXPECT_EQ(Read(*ConnectTo("RIG_FAR_URL", WithCa())), 200);
  EXPECT_EQ(Read(*ConnectTo("RIG_FAR_PLAIN_URL", {})), 200);
  EXPECT_EQ(Asked(*ConnectTo("RIG_FAR_URL", WithCa()))->GetReport()->proxyVariable, "https_proxy");
  EXPECT_EQ(Read(*ConnectTo("RIG_PLAIN_URL", {})), 200);  // never proxied
  unsetenv("https_proxy");
  unsetenv("http_proxy");
  EXPECT_THAT(LinesWith("POST " + Told("RIG_FAR_PLAIN_URL"), "access.log", 1), SizeIs(1));
}

TEST(Proxy, ThatWantsALogOnSaysSo) {
  for (std::string const& proxy : {"http://" + Told("RIG_PROXY"), ProxyOf(kWrongPassword)}) {
    auto const report = Failing(eHttpFailure_Proxy, "RIG_FAR_URL", WithProxy(proxy));
    EXPECT_EQ(report->proxyStatus, 407);
    EXPECT_EQ(report->proxy, "http://" + Told("RIG_PROXY"));
    EXPECT_THAT(report->logOn.offeredByProxy, ElementsAre("Basic"));
    EXPECT_EQ(Asked(*ConnectTo("RIG_FAR_PLAIN_URL", WithProxy(proxy)))->GetStatusCode(), 407);
  }
}

TEST(Proxy, TakesALogOnFromTheSettings) {
  HttpTransportSettings settings = WithProxy(Told("RIG_PROXY"));
  settings.proxyUser = Told("RIG_USER");
  settings.proxyPassword = RigPassword();
  EXPECT_EQ(Import(*ConnectTo("RIG_FAR_URL", settings)), 200);
  EXPECT_EQ(Import(*ConnectTo("RIG_FAR_PLAIN_URL", settings)), 200);
}

TEST(Proxy, ThatIsDownOrNoneIsToldApart) {
  auto const down =
      Failing(eHttpFailure_Proxy, "RIG_FAR_URL", WithProxy("http://ann:pw@127.0.0.1:9"));
  EXPECT_THAT(down->error, HasSubstr("Failed to connect to 127.0.0.1 port 9"));
  EXPECT_EQ(down->proxy, "http://127.0.0.1:9");
  auto const nowhere =
      Failing(eHttpFailure_Proxy, "RIG_FAR_URL", WithProxy("http://nowhere.invalid:9"));
  EXPECT_THAT(nowhere->error, HasSubstr("Could not resolve proxy: nowhere.invalid"));
  auto const server = Failing(eHttpFailure_Proxy, "RIG_FAR_URL", WithProxy(Told("RIG_PLAIN_URL")));
  EXPECT_EQ(server->proxyStatus, 400);
}
