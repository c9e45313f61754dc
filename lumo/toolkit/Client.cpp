#include "lumo/toolkit/Client.h"

#include <utility>

#include "lumo/toolkit/Source.h"

namespace lumo {

Client::Client(std::shared_ptr<lumo::Pool> pool) : m_pool(std::move(pool)) {}

Client Client::Connect(std::string const& server, ConnectOptions const& options) {
  return Client(std::make_shared<lumo::Pool>(Resolve(server, options)));
}

std::string const& Client::Url() const { return m_pool->Settings().url; }

std::vector<DatabaseInfo> Client::Databases() const { return DatabasesOf(*m_pool->Lend()); }

DatabaseInfo Client::FindDatabase(std::string const& database) const {
  return lumo::FindDatabase(*m_pool->Lend(), database);
}

std::vector<std::string> Client::Tables(std::string const& database) const {
  auto const connection = m_pool->Lend();
  return TablesOf(*connection, lumo::FindDatabase(*connection, database).key);
}

Table Client::OpenTable(std::string const& database, std::string const& table) const {
  return Table(std::make_shared<OpenedTable>(m_pool, database, table));
}

RecordStream Client::Read(Partition const& partition, ReadOptions const& options) const {
  return OpenTable(partition.database, partition.table)
      .All()
      .WithIds(partition.records)
      .Read(partition.attributes, options);
}

LumoServiceLayerServices& Client::Services() const { return m_pool->Services(); }

Table::Table(std::shared_ptr<OpenedTable> opened) : m_opened(std::move(opened)) {}

std::string const& Table::Name() const { return m_opened->info.Name(); }
std::string const& Table::Database() const { return m_opened->info.DatabaseKey(); }

std::vector<Attribute> const& Table::Attributes() const {
  return m_opened->info.Attributes(*m_opened->pool->Lend());
}
Attribute const& Table::FindAttribute(std::string const& name) const {
  return m_opened->info.FindAttribute(*m_opened->pool->Lend(), name);
}
std::vector<std::string> const& Table::Subsets() const {
  return m_opened->info.Subsets(*m_opened->pool->Lend());
}
std::vector<std::string> const& Table::UnitSystems() const {
  return m_opened->info.UnitSystems(*m_opened->pool->Lend());
}
std::vector<std::string> const& Table::Currencies() const {
  return m_opened->info.Currencies(*m_opened->pool->Lend());
}
Units const& Table::Units() const { return m_opened->info.KnownUnits(*m_opened->pool->Lend()); }

Import Table::NewImport() const { return Import(m_opened); }

Selection Table::All() const {
  auto parts = std::make_shared<SelectionParts>();
  parts->table = m_opened;
  return Selection(std::move(parts));
}

Record Table::Get(std::string const& nameOrId, std::vector<std::string> const& attributes,
                  ReadOptions const& options) const {
  std::vector<Record> records;
  All().Named({nameOrId}).Read(attributes, options).NextChunk(records);
  return records.at(0);
}

}  // namespace lumo
