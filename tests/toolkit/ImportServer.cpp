#include "tests/toolkit/ImportServer.h"

#include <httplib.h>
#include <stdlib.h>

#include <cstdlib>

ImportTest::ImportTest() {
  std::string name = std::filesystem::temp_directory_path() / "lumo-import-XXXXXX";
  m_folder = mkdtemp(name.data());
}

ImportTest::~ImportTest() {
  m_table.reset();
  m_client.reset();
  if (m_server) m_server->Stop();
  std::filesystem::remove_all(m_folder);
}

void ImportTest::Start(sandbox::Content content, int records) {
  m_table.reset();
  m_client.reset();
  if (m_server) m_server->Stop();
  m_log.str("");
  m_store = std::make_unique<sandbox::Store>(sandbox::OpenStore(":memory:", content));
  if (records > 0) sandbox::AddGeneratedRecords(*m_store, records);
  sandbox::ServerOptions options;
  options.log = &m_log;
  m_server = std::make_unique<sandbox::Server>(*m_store, options);
  m_url = "http://127.0.0.1:" + std::to_string(m_server->Start(0));
  lumo::ConnectOptions connect;
  connect.credentials = lumo::Anonymous{};
  connect.retry.initialBackoff = std::chrono::milliseconds(10);
  connect.retry.maxAttempts = 20;
  connect.onCall = [this](lumo::CallEvent const& /*call*/) { ++calls; };
  m_client = std::make_unique<lumo::Client>(lumo::Client::Connect(m_url, connect));
  m_table = std::make_unique<lumo::Table>(m_client->OpenTable("ENG_MATERIALS", "Materials"));
}

void ImportTest::Plan(std::string const& faults) const {
  auto const answer = httplib::Client(m_url).Put("/control/faults", faults, "text/plain");
  ASSERT_TRUE(answer && answer->status == 200) << (answer ? answer->body : "no answer");
}

void ImportTest::Refuse(std::string const& name) {
  m_store->Run("CREATE TRIGGER refuse_" + std::to_string(std::hash<std::string>()(name)) +
               " BEFORE INSERT ON record WHEN NEW.short_name = '" + name +
               "' BEGIN SELECT RAISE(ABORT, 'not here'); END");
}

lumo::Import ImportTest::SheetOf(Cells cells) const {
  std::vector<std::string> const headings = cells.at(0);
  cells.erase(cells.begin());
  lumo::Import import = Materials().NewImport();
  import.AddSheet(headings, cells, {});
  return import;
}

std::map<std::string, lumo::Record> ImportTest::All() const {
  lumo::ReadOptions options;
  options.withFiles = true;
  std::map<std::string, lumo::Record> all;
  for (lumo::Record const& record : Materials().All().Read({}, options)) {
    bool const isNew = all.emplace(record.Folder() + "/" + record.Name(), record).second;
    EXPECT_TRUE(isNew) << record.Name() << " is there twice";
  }
  return all;
}

std::size_t ImportTest::CountInLog(std::string const& text) {
  m_server->Stop();
  std::string const log = m_log.str();
  std::size_t count = 0;
  for (std::size_t at = 0; (at = log.find(text, at)) != std::string::npos; ++at) ++count;
  return count;
}

lumo::ImportOptions ImportTest::Quick() {
  lumo::ImportOptions options;
  options.settleAfter = std::chrono::milliseconds(50);
  return options;
}

std::vector<std::string> ImportTest::FaultsOf(lumo::ImportReport const& report) {
  std::vector<std::string> faults;
  for (lumo::RowFault const& fault : report.faults) {
    faults.push_back(fault.attribute + ": " + fault.why);
  }
  for (lumo::RowVerdict const& row : report.rows) {
    for (lumo::RowFault const& fault : row.faults) {
      faults.push_back("row " + std::to_string(row.row) +
                       (fault.attribute.empty() ? "" : ", " + fault.attribute) + ": " + fault.why);
    }
  }
  return faults;
}

std::vector<ImportTest::Kind> ImportTest::KindsOf(lumo::ImportReport const& report) {
  std::vector<Kind> kinds;
  for (lumo::RowVerdict const& row : report.rows) kinds.push_back(row.kind);
  return kinds;
}

std::size_t Scaled(char const* variable, std::size_t usual) {
  char const* const text = std::getenv(variable);
  return text == nullptr ? usual : std::strtoul(text, nullptr, 10);
}

void ExpectSameRecords(std::map<std::string, lumo::Record> const& a,
                       std::map<std::string, lumo::Record> const& b) {
  ASSERT_EQ(a.size(), b.size());
  for (auto const& [path, record] : a) {
    auto const other = b.find(path);
    ASSERT_NE(other, b.end()) << path;
    EXPECT_EQ(record.FullName(), other->second.FullName());
    for (std::size_t i = 0; i < record.Values().size(); ++i) {
      lumo::Value value = record.Values()[i];
      lumo::Value otherValue = other->second.Values()[i];
      for (auto* const one : {&value, &otherValue}) {  // an address is of its server
        if (auto* const file = std::get_if<lumo::File>(one)) file->url.clear();
      }
      EXPECT_TRUE(lumo::Same(value, otherValue)) << path << ": " << record.Attributes()[i].name;
    }
  }
}
