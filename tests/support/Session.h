#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "lumo/LumoServiceLayer.h"

/// Keeps the log lines.
class KeepingLogger : public ILogger {
 public:
  void Log(int level, const std::string& message) override {
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_lines.emplace_back(level, message);
  }
  std::vector<std::pair<int, std::string>> const& Lines() const { return m_lines; }
  /// The lines of level 1.
  std::vector<std::string> Errors() const {
    std::vector<std::string> errors;
    for (auto const& [level, text] : m_lines) {
      if (level == 1) errors.push_back(text);
    }
    return errors;
  }

 private:
  std::mutex m_mutex;
  std::vector<std::pair<int, std::string>> m_lines;
};

inline SmartPtr<LumoServiceLayerServices> Connect(
    std::string const& url, ILogger* logger = nullptr,
    SmartPtr<ILumoSLAuthModule> const& auth = nullptr) {
  return {new LumoServiceLayerServices(LumoSession::CreateOneWithLogger(url, auth, logger))};
}

inline SmartPtr<GetTables> TablesOf(std::string const& dbKey) {
  auto request = GetTables::CreateOne();
  request->SetDBKey(dbKey);
  return request;
}

/// An envelope as servers write it.
inline std::string Envelope(std::string const& body) {
  return R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body>)" + body +
         "</s:Body></s:Envelope>";
}

inline std::string const kTablesReply = Envelope(
    "<GetTablesResponse><tableDetails><table><b:table><b:tableName>Steels</b:tableName></b:table>"
    "</table></tableDetails></GetTablesResponse>");
