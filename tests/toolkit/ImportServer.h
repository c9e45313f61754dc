#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "lumo/Toolkit.h"
#include "sandbox/http/Server.h"
#include "sandbox/seed/Seed.h"

/// An import from a test into a sandbox inside it, which keeps a log.
class ImportTest : public testing::Test {
 protected:
  using Kind = lumo::RowVerdict::Kind;
  using Cells = std::vector<std::vector<std::string>>;

  ImportTest();
  ~ImportTest() override;

  void Start(sandbox::Content content = sandbox::Content::Minimal, int records = 0);
  /// Makes the next calls go wrong, a line for each.
  void Plan(std::string const& faults) const;
  /// What the server is to refuse though nothing tells a client so.
  void Refuse(std::string const& name);

  /// An import of a sheet, the first row its headings.
  lumo::Import SheetOf(Cells cells) const;
  std::filesystem::path Journal(std::string const& name) const { return m_folder + "/" + name; }
  /// All records with all their values; a record's path comes with its identity.
  std::map<std::string, lumo::Record> All() const;
  /// How often the log has that text. The server stops, as it writes a call down after its reply.
  std::size_t CountInLog(std::string const& text);

  lumo::Client& Server() { return *m_client; }
  lumo::Table const& Materials() const { return *m_table; }
  std::size_t calls = 0;

  /// Options that wait little.
  static lumo::ImportOptions Quick();
  /// "row 3, Density: ..." for each fault, in the order of the rows.
  static std::vector<std::string> FaultsOf(lumo::ImportReport const& report);
  static std::vector<Kind> KindsOf(lumo::ImportReport const& report);

 private:
  std::string m_folder;
  std::ostringstream m_log;
  std::unique_ptr<sandbox::Store> m_store;
  std::unique_ptr<sandbox::Server> m_server;
  std::string m_url;
  std::unique_ptr<lumo::Client> m_client;
  std::unique_ptr<lumo::Table> m_table;
};

/// A number from the environment, by which long tests are made longer.
std::size_t Scaled(char const* variable, std::size_t usual);
void ExpectSameRecords(std::map<std::string, lumo::Record> const& a,
                       std::map<std::string, lumo::Record> const& b);
