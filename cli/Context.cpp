#include <iostream>

#include "cli/Commands.h"

namespace cli {

std::unique_ptr<Connection> Context::Connect() {
  if (!m_hasPassword) {
    m_password = PasswordOf(server);
    m_hasPassword = true;
  }
  return std::make_unique<Connection>(server, m_password);
}

std::vector<std::unique_ptr<Connection>> Context::ConnectAll() {
  std::vector<std::unique_ptr<Connection>> connections;
  connections.reserve(static_cast<std::size_t>(jobs));
  for (int i = 0; i < jobs; ++i) connections.push_back(Connect());
  return connections;
}

void Context::Note(std::string const& text) const {
  if (!isQuiet) std::cerr << text << '\n';
}

}  // namespace cli
