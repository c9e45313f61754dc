#pragma once

#include <optional>
#include <string>

namespace sandbox {

enum class LogOn { None, Basic, Digest };

/// Judges whether requests come from the one user.
class LogOnCheck {
 public:
  LogOnCheck(LogOn kind, std::string user, std::string const& password);

  /// Nothing when the value of the request's header Authorization proves the user; otherwise what
  /// WWW-Authenticate shall say.
  std::optional<std::string> Challenge(std::string const& method, std::string const& target,
                                       std::string const& authorization) const;

 private:
  std::optional<std::string> DigestChallenge(std::string const& method, std::string const& target,
                                             std::string const& proof) const;

  LogOn m_kind;
  std::string m_user;
  std::string m_secret;  ///< what stands for user and password in the scheme
  std::string m_nonce;
};

}  // namespace sandbox
