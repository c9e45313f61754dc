#pragma once

#include <string>

#include "lumo/platform/http/HttpReport.h"
#include "lumo/toolkit/Options.h"

namespace lumo {

/// What a connection shows of a server before anything is sent. Not installed.
struct ServerLook {
  std::string address;  ///< IP address at the other end, empty without a connection
  std::string subject;  ///< of the certificate; the rest is empty without one
  std::string issuer;
  std::string until;  ///< such as "Mar 17 09:30:00 2027 GMT"
  std::string names;  ///< "DNS:server, DNS:server.example.com"
};

/// Connects, in the way that the exchange of the report went, and ends the connection: sends
/// nothing to the server, and takes any certificate, since it is there to be described.
ServerLook LookAtServer(std::string const& url, ConnectOptions const& options,
                        HttpReport const& report);

}  // namespace lumo
