#include "cli/InnerSandbox.h"

#include <exception>

#include "cli/Failure.h"
#include "sandbox/http/Server.h"
#include "sandbox/seed/Seed.h"

namespace cli {

struct InnerSandbox::Parts {
  Parts(std::string const& file, std::string const& namespaceBase)
      : store(sandbox::OpenStore(file, sandbox::Content::Full)),
        server(store, OptionsFor(namespaceBase)) {}
  static sandbox::ServerOptions OptionsFor(std::string const& namespaceBase) {
    sandbox::ServerOptions options;
    options.namespaceBase = namespaceBase;
    return options;
  }
  sandbox::Store store;
  sandbox::Server server;
  std::string url;
};

InnerSandbox::InnerSandbox(std::string const& file, std::string const& namespaceBase) try
    : m_parts(std::make_unique<Parts>(file, namespaceBase)) {
  m_parts->url = "http://127.0.0.1:" + std::to_string(m_parts->server.Start(0));
} catch (std::exception const& error) {
  Refuse("cannot keep a sandbox in " + file + ": " + error.what());
}

InnerSandbox::~InnerSandbox() { m_parts->server.Stop(); }

std::string const& InnerSandbox::Url() const { return m_parts->url; }

}  // namespace cli
