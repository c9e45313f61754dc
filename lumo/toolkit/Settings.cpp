#include "lumo/toolkit/Settings.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/Url.h"

namespace lumo {
namespace {

/// A setting of a profile, and the environment variable of the same meaning.
struct Setting {
  char const* key;
  char const* variable;
};

constexpr Setting kUrl{"url", "LUMO_URL"};
constexpr Setting kLogOn{"log-on", "LUMO_LOG_ON"};
constexpr Setting kUser{"user", "LUMO_USER"};
constexpr Setting kDomain{"domain", "LUMO_DOMAIN"};
constexpr Setting kPasswordFile{"password-file", "LUMO_PASSWORD_FILE"};
constexpr char const* kPasswordVariable = "LUMO_PASSWORD";
constexpr Setting kNamespace{"namespace", "LUMO_NAMESPACE_BASE"};
constexpr Setting kApplication{"application-name", "LUMO_APPLICATION_NAME"};
constexpr Setting kCaFile{"ca-file", "LUMO_CA_FILE"};
constexpr Setting kCertificate{"certificate-file", "LUMO_CERTIFICATE_FILE"};
constexpr Setting kKeyFile{"key-file", "LUMO_KEY_FILE"};
constexpr Setting kProxy{"proxy", "LUMO_PROXY"};
constexpr Setting const* kSettings[] = {&kUrl,          &kLogOn,     &kUser,        &kDomain,
                                        &kPasswordFile, &kNamespace, &kApplication, &kCaFile,
                                        &kCertificate,  &kKeyFile,   &kProxy};

using Profile = std::map<std::string, std::string>;

struct Profiles {
  std::string standard;  // name of the one that is taken when none is named
  std::map<std::string, Profile> all;
};

std::string Environment(char const* variable) {
  char const* const value = std::getenv(variable);
  return value == nullptr ? std::string() : value;
}

[[noreturn]] void Refuse(std::string const& text, Hint hint = {}) {
  throw Error(ErrorCode::InvalidArgument, text, std::move(hint));
}

/// With the home folder for a "~" at the beginning.
std::string ExpandHome(std::string const& path) {
  return path.compare(0, 2, "~/") == 0 ? Environment("HOME") + path.substr(1) : path;
}

/// Reads lines "key = value", "[profile]", and those that begin with "#" or ";".
class ProfileReader {
 public:
  Profiles Read(std::istream& file) {
    for (std::string line; std::getline(file, line);) {
      ++m_line;
      ReadLine(Trimmed(line));
    }
    return std::move(m_profiles);
  }

 private:
  void ReadLine(std::string_view line) {
    if (line.empty() || line.front() == '#' || line.front() == ';') return;
    if (line.front() == '[' && line.back() == ']') {
      m_name = Trimmed(line.substr(1, line.size() - 2));
      m_profiles.all[m_name];
      return;
    }
    std::size_t const equals = line.find('=');
    if (equals == std::string_view::npos) Complain("is not \"key = value\"");
    std::string const key(Trimmed(line.substr(0, equals)));
    std::string const value(Trimmed(line.substr(equals + 1)));
    if (m_name.empty() && key == "default") {
      m_profiles.standard = value;
      return;
    }
    CheckKey(key);
    if (m_name.empty()) Complain("stands before the first [profile]");
    m_profiles.all[m_name][key] = value;
  }

  void CheckKey(std::string const& key) const {
    if (key == "password") {
      Complain("holds a password; keep it in a file of its own and name that as password-file");
    }
    std::vector<std::string> keys;
    for (Setting const* const setting : kSettings) keys.emplace_back(setting->key);
    if (std::find(keys.begin(), keys.end(), key) != keys.end()) return;
    Complain("has an unknown key " + Quoted(key), {HintCode::DidYouMean, Alike(key, keys)});
  }

  [[noreturn]] void Complain(std::string const& what, Hint hint = {}) const {
    Refuse(ProfileFile() + ": line " + std::to_string(m_line) + " " + what, std::move(hint));
  }

  Profiles m_profiles;
  std::string m_name;
  int m_line = 0;
};

Profiles ReadProfiles() {
  std::ifstream file(ProfileFile());
  return file ? ProfileReader().Read(file) : Profiles();
}

std::string WithoutSlash(std::string url) {
  while (!url.empty() && url.back() == '/') url.pop_back();
  return url;
}

/// The profile of that name, or of the server at that address; empty for an address without one.
Profile ProfileOf(std::string const& server, Profiles const& profiles) {
  auto const named = profiles.all.find(server);
  if (named != profiles.all.end()) return named->second;
  for (auto const& [name, profile] : profiles.all) {
    auto const url = profile.find(kUrl.key);
    if (url != profile.end() && WithoutSlash(url->second) == WithoutSlash(server)) return profile;
  }
  if (server.find_first_of(":/.") != std::string::npos) return {};
  std::vector<std::string> names;
  for (auto const& [name, profile] : profiles.all) names.push_back(name);
  Refuse("there is no server " + Quoted(server) + " in " + ProfileFile(), {HintCode::OneOf, names});
}

}  // namespace

std::string FirstLineOf(std::string const& path) {
  std::ifstream file(ExpandHome(path));
  std::string line;
  if (!std::getline(file, line)) {
    Refuse("there is no password in " + path, {HintCode::CheckFile, {path}});
  }
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

namespace {

/// Looks settings up in the environment, then in a profile.
class LookUp {
 public:
  LookUp(Profile profile, std::function<std::string(std::string const&)> ask)
      : m_profile(std::move(profile)), m_ask(std::move(ask)) {}

  std::string Get(Setting const& setting) const {
    std::string const value = Environment(setting.variable);
    return value.empty() ? InProfile(setting) : value;
  }
  void Fill(std::string& option, Setting const& setting) const {
    if (option.empty()) option = Get(setting);
  }
  void FillFile(std::string& option, Setting const& setting) const {
    Fill(option, setting);
    option = ExpandHome(option);
  }

  Credentials LogOn() const {
    std::string const kind = Get(kLogOn);
    if (kind == "ticket") return Ticket{};
    if (kind == "anonymous") return Anonymous{};
    if (!kind.empty() && kind != "password") {
      Refuse(Quoted(kind) + " is not a kind of log-on",
             {HintCode::OneOf, {"anonymous", "password", "ticket"}});
    }
    Password password{Get(kUser), "", Get(kDomain)};
    if (!password.user.empty()) return WithPassword(std::move(password));
    if (kind.empty()) return Anonymous{};
    Refuse("the log-on needs a user", {HintCode::LogOn});
  }

  Password WithPassword(Password given) const {
    Fill(given.user, kUser);
    Fill(given.domain, kDomain);
    if (given.user.empty()) Refuse("the log-on needs a user", {HintCode::LogOn});
    if (!given.password.empty()) return given;
    std::string const file = Environment(kPasswordFile.variable);
    given.password = file.empty() ? Environment(kPasswordVariable) : FirstLineOf(file);
    std::string const inProfile = InProfile(kUser) == given.user ? InProfile(kPasswordFile) : "";
    if (given.password.empty() && !inProfile.empty()) given.password = FirstLineOf(inProfile);
    if (given.password.empty() && m_ask) given.password = m_ask(given.user);
    if (!given.password.empty()) return given;
    Refuse("there is no password for " + Quoted(given.user),
           {HintCode::GivePassword, {given.user}});
  }

 private:
  std::string InProfile(Setting const& setting) const {
    auto const found = m_profile.find(setting.key);
    return found == m_profile.end() ? std::string() : found->second;
  }

  Profile m_profile;
  std::function<std::string(std::string const&)> m_ask;
};

}  // namespace

std::string ProfileFile() {
  std::string const folder = Environment("XDG_CONFIG_HOME");
  return (folder.empty() ? Environment("HOME") + "/.config" : folder) + "/lumo/servers.ini";
}

ServerSettings Resolve(std::string const& server, ConnectOptions const& options) {
  Profiles const profiles = ReadProfiles();
  std::string wanted = server.empty() ? Environment(kUrl.variable) : server;
  if (wanted.empty()) wanted = profiles.standard;
  if (wanted.empty() && profiles.all.size() == 1) wanted = profiles.all.begin()->first;
  if (wanted.empty()) Refuse("no server is named", {HintCode::GiveServer});

  Profile profile = ProfileOf(wanted, profiles);
  bool const isName = profiles.all.count(wanted) != 0;
  ServerSettings settings{isName ? profile[kUrl.key] : wanted, options};
  if (settings.url.empty()) Refuse("the profile " + Quoted(wanted) + " has no url");
  CheckUrl(settings.url);

  LookUp const lookUp(std::move(profile), options.askPassword);
  ConnectOptions& filled = settings.options;
  if (std::holds_alternative<std::monostate>(filled.credentials)) {
    filled.credentials = lookUp.LogOn();
  } else if (auto const* const password = std::get_if<Password>(&filled.credentials)) {
    filled.credentials = lookUp.WithPassword(*password);
  }
  lookUp.Fill(filled.vendorNamespace, kNamespace);
  lookUp.Fill(filled.applicationName, kApplication);
  lookUp.FillFile(filled.caFile, kCaFile);
  lookUp.FillFile(filled.certificateFile, kCertificate);
  lookUp.FillFile(filled.keyFile, kKeyFile);
  lookUp.Fill(filled.proxy, kProxy);
  return settings;
}

}  // namespace lumo
