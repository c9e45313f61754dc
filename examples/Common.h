#pragma once

#include <exception>
#include <iostream>
#include <string>

#include <lumo/LumoServiceLayer.h>

/// What the examples share: connecting, and telling what went wrong.

/// Shows errors; the timing of calls is of no interest here.
class ErrorsToStderr : public ILogger {
 public:
  void Log(int level, const std::string& message) override {
    if (level <= 1) std::cerr << message << '\n';
  }
};

inline bool Succeeded(IResponse const& response) {
  auto const outcome = response.GetServiceLayerResponse();
  if (!outcome->Succeeded()) std::cerr << outcome->ErrorText() << '\n';
  return outcome->Succeeded();
}

/// Runs `work(services)` with the server at `url`; gives the exit code of the program. Without a
/// user the log-on is anonymous.
template <class Work>
int RunExample(std::string const& url, std::string const& user, std::string const& password,
               Work work) try {
  auto const logOn = user.empty() ? LumoSLAuth_Annonymous::CreateOne()
                                  : LumoSLAuth_Authenticated::CreateOne(user, password);
  kpxtkLumoServiceLayer::Initialize();
  bool done = false;
  {
    ErrorsToStderr logger;
    LumoServiceLayerServices services(LumoSession::CreateOneWithLogger(url, logOn, &logger));
    done = work(services);
  }
  kpxtkLumoServiceLayer::Shutdown();
  return done ? 0 : 1;
} catch (std::exception const& error) {  // a value in a reply did not convert
  std::cerr << "error: " << error.what() << '\n';
  return 1;
}

/// The table of that name.
inline SmartPtr<TableReference> TableNamed(std::string const& dbKey, std::string const& name) {
  auto table = TableReference::CreateOne();
  table->SetDBKey(dbKey);
  table->SetTableName(name);
  return table;
}
