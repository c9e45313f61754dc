#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "lumo/LumoServiceLayer.h"

/// What the rig tells: the value of an environment variable. Throws when it is not set.
std::string Told(std::string const& variable);

/// The lines of a file of the rig in which the text stands, once there are so many; servers write
/// their logs after their replies.
std::vector<std::string> LinesWith(std::string const& text, std::string const& file,
                                   std::size_t atLeast = 0);

/// The password that the rig made, and a password that is wrong.
std::string RigPassword();
inline std::string const kWrongPassword = "wr0ng-s3cret";

/// Services of a server with that log-on; its errors are logged in the test's output.
SmartPtr<LumoServiceLayerServices> Connect(std::string const& url,
                                           SmartPtr<ILumoSLAuthModule> const& logOn,
                                           HttpTransportSettings const& settings = {});

inline SmartPtr<ILumoSLAuthModule> Ticket() { return LumoSLAuth_AutoLoginAuth::CreateOne(); }
inline SmartPtr<ILumoSLAuthModule> User(std::string const& password = RigPassword()) {
  return LumoSLAuth_Authenticated::CreateOne(Told("RIG_USER"), password);
}

/// Status of a call that reads; 500 when there is no reply. What the response says is printed.
int Read(LumoServiceLayerServices& services);
/// The same for a call that imports a record with a file of so many bytes.
int Import(LumoServiceLayerServices& services, std::size_t bytes = 1);

/// The message of a GET that has come back, with everything that can be told of it, which is
/// printed.
SmartPtr<HttpMessage> Asked(LumoServiceLayerServices& services);
MATCHER_P(IsRefused, why, "has the status 401, with the reason " + std::string(why)) {
  std::string const& trouble = arg->GetReport()->logOn.trouble;
  *result_listener << "status " << arg->GetStatusCode() << ", reason " << trouble;
  return arg->GetStatusCode() == 401 && trouble.find(why) != std::string::npos;
}
