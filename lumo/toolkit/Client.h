#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lumo/toolkit/DatabaseInfo.h"
#include "lumo/toolkit/Import.h"
#include "lumo/toolkit/Options.h"
#include "lumo/toolkit/Selection.h"
#include "lumo/toolkit/Units.h"

class LumoServiceLayerServices;

namespace lumo {

class Pool;
class TableInfo;
struct OpenedTable;

/// A table of a database. Copies share what is known of it; safe to use from several threads. The
/// functions that ask the server throw `Error`.
class LUMO_API Table {
 public:
  /// Name of the table, as the server has it.
  std::string const& Name() const;
  /// Key of the database.
  std::string const& Database() const;
  /// With their parameters, in the server's order; asked for once.
  std::vector<Attribute> const& Attributes() const;
  /// By a name in whatever case, or by a beginning or words that no other has ("sea wat" for
  /// "Durability: sea water"). Throws `Error`: NotFound, Ambiguous.
  Attribute const& FindAttribute(std::string const& name) const;
  /// Subsets of the table, and unit systems and currencies of its database, by name:
  std::vector<std::string> const& Subsets() const;
  std::vector<std::string> const& UnitSystems() const;
  std::vector<std::string> const& Currencies() const;
  /// The server's factors for the units of this table.
  lumo::Units const& Units() const;

  /// All records of the table.
  Selection All() const;
  /// Those that fulfil a condition; see `Selection::Where`.
  Selection Where(std::string const& condition, Match match = Match::Overlap) const {
    return All().Where(condition, match);
  }
  /// Those that have these words; see `Selection::Text`.
  Selection Text(std::string const& words) const { return All().Text(words); }
  /// Those below a folder; see `Selection::Below`.
  Selection Below(std::string const& folder) const { return All().Below(folder); }
  /// Those in a subset; see `Selection::In`.
  Selection In(std::string const& subset) const { return All().In(subset); }
  /// One record by its name, its path, its identity as "id:69" or a GUID, with these attributes or
  /// with all. Throws `Error`: NotFound, with names that are alike; Ambiguous.
  Record Get(std::string const& nameOrId, std::vector<std::string> const& attributes = {},
             ReadOptions const& options = {}) const;
  /// Makes and changes records of this table; see `Import`.
  Import NewImport() const;
  /// The table and its connections, for the project's other parts.
  std::shared_ptr<OpenedTable> const& Opened() const { return m_opened; }

 private:
  friend class Client;
  explicit Table(std::shared_ptr<OpenedTable> opened);

  std::shared_ptr<OpenedTable> m_opened;
};

/// The way to a server:
///
///     auto const client = lumo::Client::Connect("https://server/service_layer", {lumo::Ticket{}});
///     auto const table = client.OpenTable("ENG_MATERIALS", "Materials");
///     for (lumo::Record const& record : table.All().Read({"Density"}))
///       std::cout << record.Name() << ' ' << record.Number("Density", "kg/m^3").value_or(0) <<
///       '\n';
///
/// Copies share connections; safe to use from several threads, and in a child after `fork` when no
/// call was under way. Starts the exact library up, which must then not be shut down.
class LUMO_API Client {
 public:
  /// `server` is a URL, or the name of a profile. Sends nothing yet. What the options leave empty
  /// comes from the environment, then from the profile of that name or URL. An empty `server`
  /// stands for LUMO_URL, then for the profile that the file names as default, or its only one.
  /// Throws `Error` (InvalidArgument).
  ///
  /// The variables are LUMO_URL, LUMO_LOG_ON (anonymous, password, ticket), LUMO_USER, LUMO_DOMAIN,
  /// LUMO_PASSWORD_FILE, LUMO_PASSWORD, LUMO_NAMESPACE_BASE, LUMO_APPLICATION_NAME, LUMO_CA_FILE,
  /// LUMO_CA_FOLDER, LUMO_CERTIFICATE_FILE, LUMO_KEY_FILE, LUMO_PROXY, LUMO_PROXY_USER,
  /// LUMO_PROXY_PASSWORD_FILE and LUMO_PROXY_PASSWORD. Where neither they nor the profile name
  /// certificates to trust, CURL_CA_BUNDLE does, then SSL_CERT_FILE and SSL_CERT_DIR. The file is
  /// $XDG_CONFIG_HOME/lumo/servers.ini, or ~/.config/lumo/servers.ini; passwords stay in files of
  /// their own:
  ///
  ///     default = plant
  ///     [plant]
  ///     url = https://server/service_layer
  ///     log-on = ticket
  ///     ca-file = ~/company.pem
  ///     [lab]
  ///     url = https://lab/service_layer
  ///     user = me
  ///     password-file = ~/.lab-password
  ///
  /// Further keys are domain, namespace, application-name, ca-folder, certificate-file, key-file,
  /// proxy, proxy-user and proxy-password-file.
  static Client Connect(std::string const& server = "", ConnectOptions const& options = {});

  /// URL of the server.
  std::string const& Url() const;
  /// The databases of the server. Throws `Error`.
  std::vector<DatabaseInfo> Databases() const;
  /// By its key or name, in whatever case, or by a beginning or words that no other has. Throws
  /// `Error`: NotFound, Ambiguous.
  DatabaseInfo FindDatabase(std::string const& database) const;
  /// Names of the tables of a database, which is found by its key or name.
  std::vector<std::string> Tables(std::string const& database) const;
  /// Names in whatever case, or beginnings or words that no other has. Throws `Error`: NotFound,
  /// Ambiguous.
  Table OpenTable(std::string const& database, std::string const& table) const;
  /// Reads the records of a partition, whatever its server is called there.
  RecordStream Read(Partition const& partition, ReadOptions const& options = {}) const;
  /// The connections, for the project's other parts.
  std::shared_ptr<lumo::Pool> const& Pool() const { return m_pool; }
  /// The exact library, for everything else. Lives as long as the client or a copy of it.
  LumoServiceLayerServices& Services() const;

 private:
  explicit Client(std::shared_ptr<lumo::Pool> pool);

  std::shared_ptr<lumo::Pool> m_pool;
};

}  // namespace lumo
