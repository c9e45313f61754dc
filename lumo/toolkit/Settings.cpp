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
constexpr Setting kCaFolder{"ca-folder", "LUMO_CA_FOLDER"};
constexpr Setting kProxy{"proxy", "LUMO_PROXY"};
constexpr Setting kProxyUser{"proxy-user", "LUMO_PROXY_USER"};
constexpr Setting kProxyPasswordFile{"proxy-password-file", "LUMO_PROXY_PASSWORD_FILE"};
constexpr char const* kProxyPasswordVariable = "LUMO_PROXY_PASSWORD";
constexpr Setting const* kSettings[] = {
    &kUrl,       &kLogOn,       &kUser,      &kDomain,           &kPasswordFile,
    &kNamespace, &kApplication, &kCaFile,    &kCaFolder,         &kCertificate,
    &kKeyFile,   &kProxy,       &kProxyUser, &kProxyPasswordFile};

/// The variables of other programs that name certificates to trust; the first one that is set
/// counts, and SSL_CERT_FILE and SSL_CERT_DIR go together.
constexpr Setting kBundle{"", "CURL_CA_BUNDLE"};
constexpr Setting kCertFile{"", "SSL_CERT_FILE"};
constexpr Setting kCertFolder{"", "SSL_CERT_DIR"};

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
  if (!file) Refuse("the password cannot be read from " + path);
  if (!std::getline(file, line)) Refuse("there is no password in " + path);
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

namespace {

/// A user and where the password for it may stand.
struct UserSettings {
  Setting user;
  Setting passwordFile;
  char const* passwordVariable;
};
constexpr UserSettings kServerUser{kUser, kPasswordFile, kPasswordVariable};
constexpr UserSettings kUserOfProxy{kProxyUser, kProxyPasswordFile, kProxyPasswordVariable};

/// Looks settings up in the environment, then in a profile, and notes where they were.
class LookUp {
 public:
  /// `profileName` is what errors call the profile.
  LookUp(Profile profile, std::string profileName, ConnectOptions& options)
      : m_profile(std::move(profile)), m_name(std::move(profileName)), m_options(options) {}

  void Fill(std::string& option, Setting const& setting) {
    if (option.empty()) option = Get(setting);
  }
  void FillFile(std::string& option, Setting const& setting) {
    Fill(option, setting);
    option = ExpandHome(option);
  }

  /// What is trusted, as one choice: who names a file has no use for another one's folder.
  void FillAuthorities() {
    auto const isChosen = [this] {
      return !m_options.caFile.empty() || !m_options.caFolder.empty();
    };
    if (isChosen()) return;
    FillFile(m_options.caFile, kCaFile);
    FillFile(m_options.caFolder, kCaFolder);
    if (!isChosen()) FillFrom(m_options.caFile, kBundle, kCaFile);
    if (isChosen()) return;
    FillFrom(m_options.caFile, kCertFile, kCaFile);
    FillFrom(m_options.caFolder, kCertFolder, kCaFolder);
  }

  Credentials LogOn() {
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

  Password WithPassword(Password given) {
    Fill(given.user, kUser);
    Fill(given.domain, kDomain);
    if (given.user.empty()) Refuse("the log-on needs a user", {HintCode::LogOn});
    if (given.password.empty()) given.password = FindPassword(given.user, kServerUser);
    if (given.password.empty() && m_options.askPassword) {
      given.password = m_options.askPassword(given.user);
    }
    if (!given.password.empty()) return given;
    Refuse("there is no password for " + Quoted(given.user),
           {HintCode::GivePassword, {given.user}});
  }

  void FillProxy() {
    Fill(m_options.proxy, kProxy);
    Fill(m_options.proxyUser, kProxyUser);
    if (m_options.proxyUser.empty() || !m_options.proxyPassword.empty()) return;
    m_options.proxyPassword = FindPassword(m_options.proxyUser, kUserOfProxy);
    if (!m_options.proxyPassword.empty()) return;
    Refuse("there is no password for " + Quoted(m_options.proxyUser) + " at the proxy: set " +
           kProxyPasswordVariable + ", or name a file with " + kProxyPasswordFile.variable);
  }

 private:
  std::string InProfile(Setting const& setting) const {
    auto const found = m_profile.find(setting.key);
    return found == m_profile.end() ? std::string() : found->second;
  }

  std::string Get(Setting const& setting) {
    std::string value = Environment(setting.variable);
    bool const isVariable = !value.empty();
    if (!isVariable) value = InProfile(setting);
    if (!value.empty()) m_options.origins[setting.key] = isVariable ? setting.variable : m_name;
    return value;
  }

  void FillFrom(std::string& option, Setting const& variable, Setting const& setting) {
    option = Environment(variable.variable);
    if (!option.empty()) m_options.origins[setting.key] = variable.variable;
  }

  /// Empty when there is none.
  std::string FindPassword(std::string const& user, UserSettings const& settings) const {
    std::string const file = Environment(settings.passwordFile.variable);
    std::string password =
        file.empty() ? Environment(settings.passwordVariable) : FirstLineOf(file);
    std::string const inProfile =
        InProfile(settings.user) == user ? InProfile(settings.passwordFile) : "";
    if (password.empty() && !inProfile.empty()) password = FirstLineOf(inProfile);
    return password;
  }

  Profile m_profile;
  std::string m_name;
  ConnectOptions& m_options;
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

  ConnectOptions& filled = settings.options;
  if (server.empty()) {
    bool const isVariable = !Environment(kUrl.variable).empty();
    filled.origins[kUrl.key] = isVariable ? kUrl.variable : ProfileFile();
  }
  LookUp lookUp(std::move(profile), "the profile in " + ProfileFile(), filled);
  if (std::holds_alternative<std::monostate>(filled.credentials)) {
    filled.credentials = lookUp.LogOn();
  } else if (auto const* const password = std::get_if<Password>(&filled.credentials)) {
    filled.credentials = lookUp.WithPassword(*password);
  }
  lookUp.Fill(filled.vendorNamespace, kNamespace);
  lookUp.Fill(filled.applicationName, kApplication);
  lookUp.FillAuthorities();
  lookUp.FillFile(filled.certificateFile, kCertificate);
  lookUp.FillFile(filled.keyFile, kKeyFile);
  lookUp.FillProxy();
  return settings;
}

}  // namespace lumo
