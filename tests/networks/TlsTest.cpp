// Certificates and proxies, against real web servers; scripts/with-tls runs these.
#include <cstdlib>

#include "tests/networks/Networks.h"

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
std::string ErrorOf(std::string const& variable, HttpTransportSettings const& settings) {
  return Asked(*ConnectTo(variable, settings))->GetTransportError();
}

}  // namespace

TEST(Tls, APrivateAuthorityIsTrustedOnceItsFileIsGiven) {
  EXPECT_EQ(Read(*ConnectTo("LUMO_URL", WithCa())), 200);
  EXPECT_THAT(ErrorOf("LUMO_URL", {}), HasSubstr("unable to get local issuer certificate"));
  HttpTransportSettings missing;
  missing.caFile = "/nowhere/ca.pem";
  EXPECT_THAT(ErrorOf("LUMO_URL", missing), HasSubstr("certificate file: /nowhere/ca.pem"));
}

TEST(Tls, BadCertificatesAreRefused) {
  EXPECT_THAT(ErrorOf("RIG_EXPIRED_URL", WithCa()), HasSubstr("certificate has expired"));
  EXPECT_THAT(ErrorOf("RIG_WRONG_HOST_URL", WithCa()),
              HasSubstr("no alternative certificate subject name matches target host name"));
}

TEST(Tls, AServerThatWantsACertificateGetsIt) {
  EXPECT_EQ(Read(*ConnectTo("RIG_CLIENT_URL", WithCertificate("client.pem", "client.key"))), 200);
  EXPECT_THAT(ErrorOf("RIG_CLIENT_URL", WithCa()), HasSubstr("alert certificate required"));
  EXPECT_THAT(ErrorOf("RIG_CLIENT_URL", WithCertificate("nothing.pem", "client.key")),
              HasSubstr("/nothing.pem"));
  EXPECT_THAT(ErrorOf("RIG_CLIENT_URL", WithCertificate("client.pem", "web.key")),
              HasSubstr("/web.key"));
}

TEST(Tls, AnImportReachesTheServerOnce) {
  EXPECT_EQ(Import(*ConnectTo("RIG_CLIENT_URL", WithCertificate("client.pem", "client.key"))), 200);
  EXPECT_THAT(LinesWith("POST /DataImport", "access.log", 1), SizeIs(1));
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
  EXPECT_EQ(Read(*ConnectTo("RIG_PLAIN_URL", {})), 200);  // never proxied
  unsetenv("https_proxy");
  unsetenv("http_proxy");
  EXPECT_THAT(LinesWith("POST " + Told("RIG_FAR_PLAIN_URL"), "access.log", 1), SizeIs(1));
}

TEST(Proxy, ThatWantsALogOnSaysSo) {
  for (std::string const& proxy : {"http://" + Told("RIG_PROXY"), ProxyOf(kWrongPassword)}) {
    EXPECT_THAT(ErrorOf("RIG_FAR_URL", WithProxy(proxy)), HasSubstr("response 407"));
    EXPECT_EQ(Asked(*ConnectTo("RIG_FAR_PLAIN_URL", WithProxy(proxy)))->GetStatusCode(), 407);
  }
}

TEST(Proxy, ThatIsDownOrNoneIsToldApart) {
  EXPECT_THAT(ErrorOf("RIG_FAR_URL", WithProxy("http://ann:" + kWrongPassword + "@127.0.0.1:9")),
              HasSubstr("Failed to connect to 127.0.0.1 port 9"));
  EXPECT_THAT(ErrorOf("RIG_FAR_URL", WithProxy("http://nowhere.invalid:9")),
              HasSubstr("Could not resolve proxy: nowhere.invalid"));
  EXPECT_THAT(ErrorOf("RIG_FAR_URL", WithProxy(Told("RIG_PLAIN_URL"))), HasSubstr("CONNECT"));
}
