#include "cli/NextStep.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace cli {
namespace {

using lumo::HintCode;

/// The arguments of a hint, of which some may be left out.
class Arguments {
 public:
  explicit Arguments(lumo::Hint const& hint) : m_all(hint.arguments) {}
  std::string operator[](std::size_t index) const {
    return index < m_all.size() ? m_all[index] : std::string();
  }
  std::vector<std::string> const& All() const { return m_all; }

 private:
  std::vector<std::string> const& m_all;
};

/// " (SSL_CERT_FILE)", who chose something.
std::string Origin(std::string const& who) { return who.empty() ? "" : " (" + who + ")"; }

std::string OfAuthority(Arguments const& with) {
  std::string name = "Name the certificate of your company's authority with --ca-file.";
  if (with[0].empty()) return name;
  return with[0] + Origin(with[1]) + " does not hold the authority of this server. " + name;
}

std::string OfFile(Arguments const& with) {
  if (with[0].empty()) return {};
  return "Check " + with[0] + Origin(with[1]) +
         ": it cannot be read, is not in PEM form, or is a key that does not fit its certificate.";
}

std::string OfProxy(Arguments const& with) {
  std::string const who = with[1].empty() ? "--proxy" : with[1];
  return "No proxy answers at " + with[0] + ". Correct " + who +
         ", or list the server's name in no_proxy where it can be reached without.";
}

std::string OfLogOn(std::vector<std::string> const& methods) {
  bool const hasTicket = std::find(methods.begin(), methods.end(), "Negotiate") != methods.end();
  std::string byTicket = "Log on with a ticket: kinit, then --ticket.";
  std::string byUser = "Log on with --user and --password-file.";
  if (!hasTicket) return byUser;
  return methods.size() == 1 ? byTicket : byTicket + " Or: " + byUser;
}

std::string OfClock(std::string const& ahead) {
  long const seconds = std::atol(ahead.c_str());
  std::string const what = seconds == 0 ? "or have the server's set"
                                        : "it is " + std::to_string(std::labs(seconds)) + " s " +
                                              (seconds > 0 ? "fast" : "slow");
  return "Set the clock of this machine: " + what + ".";
}

std::string OfTls(HintCode code, Arguments const& with) {
  switch (code) {
    case HintCode::UseHttps: return "Write https:// into --url, with the port that serves it.";
    case HintCode::UseHttp:
      return "This port does not speak TLS: write http:// into --url, or name the port for https.";
    case HintCode::TrustAuthority: return OfAuthority(with);
    case HintCode::CheckFile: return OfFile(with);
    case HintCode::RenewCertificate:
      return "Have the administrators of " + with[0] +
             " renew its certificate; see whether the date of this machine is right.";
    case HintCode::CheckHost:
      return "Write one of the names in the certificate into --url instead of " + with[0] + ".";
    case HintCode::GiveCertificate:
      return with[0].empty()
                 ? "Name a certificate of yours with --certificate and its key with --key."
                 : "The server does not take " + with[0] +
                       ": name another certificate with --certificate.";
    default: return {};
  }
}

std::string OfWay(HintCode code, Arguments const& with) {
  switch (code) {
    case HintCode::CheckName:
      return "Check the name " + with[0] +
             "; some names are known inside the company's network only.";
    case HintCode::CheckConnection:
      return "Nothing answers at " + with[0] +
             ". Check host and port in --url, and whether a firewall is in between.";
    case HintCode::CheckAddress:
      return with[0] + " does not answer as a service layer: check the path in --url.";
    case HintCode::FollowRedirect:
      return "Something in front of the server sends you to " + with[0] +
             ". Ask for the address of the service layer itself for --url.";
    case HintCode::CheckProxy: return OfProxy(with);
    case HintCode::LogOnToProxy:
      return "Log on to the proxy with --proxy-user and --proxy-password-file.";
    case HintCode::AskProxy:
      return "Ask the administrators of the proxy " + with[0] + " to let calls to " + with[1] +
             " through.";
    case HintCode::TryLater:
      return "Try again in a while; if it lasts, tell the server's administrators.";
    case HintCode::WaitLonger:
      return "The server took the call and said nothing for " + with[0] +
             " s: try again later, or with a longer --timeout.";
    case HintCode::SendLess: return "Ask for less at once, with a smaller --chunk.";
    case HintCode::UseNamespace: return "Give --namespace " + with[0] + ".";
    case HintCode::CheckNamespace:
      return "Ask for the base of this server's namespaces and give it as --namespace.";
    case HintCode::CheckVersion:
      return "This server speaks version " + with[0] + ", and this command another one.";
    default: return OfTls(code, with);
  }
}

}  // namespace

std::string NextStep(lumo::Hint const& hint) {
  Arguments const with(hint);
  switch (hint.code) {
    case HintCode::LogOn: return OfLogOn(with.All());
    case HintCode::CheckPassword:
      return "Check user, domain and password of " + with[0] +
             " (--user, --domain, --password-file).";
    case HintCode::AvoidNtlm:
      return "NTLM works here for ASCII names of users and passwords of Latin-1 letters alone: "
             "change the password of " +
             with[0] + ", or log on with --ticket.";
    case HintCode::GetTicket:
      return "Get a ticket with kinit; klist shows which there are and until when.";
    case HintCode::CheckServerName:
      return "The realm has no service at " + with[0] +
             ": write the server's full name into --url, or have the name registered.";
    case HintCode::CheckRealm: return "Have /etc/krb5.conf name the servers of the realm.";
    case HintCode::SetClock: return OfClock(with[0]);
    case HintCode::CheckTicket:
      return "The server does not take the ticket: look with klist, get another one with kinit; "
             "KRB5_TRACE=/dev/stderr tells more.";
    case HintCode::AskForRights:
      return "Ask for the right to do this" + (with[0].empty() ? "" : " for " + with[0]) +
             ", or log on as somebody else (--user).";
    default: return OfWay(hint.code, with);
  }
}

}  // namespace cli
