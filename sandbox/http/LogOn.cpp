#include "sandbox/http/LogOn.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <map>
#include <stdexcept>
#include <utility>

#include "sandbox/wire/Base64.h"

namespace sandbox {
namespace {

constexpr char kRealm[] = "lumo-sandbox";

std::string Hex(unsigned char const* bytes, std::size_t count) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 15];
  }
  return text;
}

std::string Md5(std::string const& text) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned size = 0;
  if (EVP_Digest(text.data(), text.size(), digest.data(), &size, EVP_md5(), nullptr) != 1) {
    throw std::runtime_error("this machine's OpenSSL offers no MD5");
  }
  return Hex(digest.data(), size);
}

std::string RandomNonce() {
  std::array<unsigned char, 16> bytes{};
  if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1) {
    throw std::runtime_error("the system gave no random bytes");
  }
  return Hex(bytes.data(), bytes.size());
}

/// Takes the same time wherever the texts differ, so that time does not tell how much was right.
bool AreEqual(std::string const& a, std::string const& b) {
  return a.size() == b.size() && CRYPTO_memcmp(a.data(), b.data(), a.size()) == 0;
}

/// What follows the name of the scheme in an Authorization header; empty for another scheme.
std::string ProofOf(std::string const& scheme, std::string const& authorization) {
  if (strncasecmp(authorization.c_str(), (scheme + " ").c_str(), scheme.size() + 1) != 0) return "";
  std::size_t const begin = authorization.find_first_not_of(' ', scheme.size());
  return begin == std::string::npos ? "" : authorization.substr(begin);
}

/// The pairs of `a="x", b=y`. What is no such list gives pairs that prove nothing.
std::map<std::string, std::string> PairsOf(std::string const& list) {
  std::map<std::string, std::string> pairs;
  std::size_t at = 0;
  while ((at = list.find_first_not_of(" \t,", at)) != std::string::npos) {
    std::size_t const equals = list.find('=', at);
    if (equals == std::string::npos) break;
    std::string const name = list.substr(at, equals - at);
    std::string value;
    at = equals + 1;
    if (at < list.size() && list[at] == '"') {
      for (++at; at < list.size() && list[at] != '"'; ++at) {
        if (list[at] == '\\' && at + 1 < list.size()) ++at;
        value += list[at];
      }
      if (at < list.size()) ++at;
    } else {
      std::size_t const end = std::min(list.find_first_of(" \t,", at), list.size());
      value = list.substr(at, end - at);
      at = end;
    }
    pairs[name] = value;
  }
  return pairs;
}

}  // namespace

LogOnCheck::LogOnCheck(LogOn kind, std::string user, std::string const& password)
    : m_kind(kind), m_user(std::move(user)) {
  if (kind == LogOn::Basic) m_secret = EncodeBase64(m_user + ":" + password);
  if (kind == LogOn::Digest) {
    m_secret = Md5(m_user + ":" + kRealm + ":" + password);
    m_nonce = RandomNonce();
  }
}

std::optional<std::string> LogOnCheck::Challenge(std::string const& method,
                                                 std::string const& target,
                                                 std::string const& authorization) const {
  switch (m_kind) {
    case LogOn::None: break;
    case LogOn::Basic:
      if (AreEqual(ProofOf("Basic", authorization), m_secret)) break;
      return std::string("Basic realm=\"") + kRealm + "\", charset=\"UTF-8\"";
    case LogOn::Digest: return DigestChallenge(method, target, ProofOf("Digest", authorization));
  }
  return std::nullopt;
}

std::optional<std::string> LogOnCheck::DigestChallenge(std::string const& method,
                                                       std::string const& target,
                                                       std::string const& proof) const {
  auto pairs = PairsOf(proof);
  bool const isOurs = pairs["username"] == m_user && pairs["realm"] == kRealm &&
                      pairs["uri"] == target && pairs["qop"] == "auth" &&
                      (pairs["algorithm"].empty() || pairs["algorithm"] == "MD5");
  std::string const expected = Md5(m_secret + ":" + pairs["nonce"] + ":" + pairs["nc"] + ":" +
                                   pairs["cnonce"] + ":auth:" + Md5(method + ":" + target));
  bool const knowsPassword = isOurs && AreEqual(pairs["response"], expected);
  if (knowsPassword && pairs["nonce"] == m_nonce) return std::nullopt;
  // Stale says that the password need not be asked for again.
  return std::string("Digest realm=\"") + kRealm + "\", nonce=\"" + m_nonce +
         "\", qop=\"auth\", algorithm=MD5" + (knowsPassword ? ", stale=true" : "");
}

}  // namespace sandbox
