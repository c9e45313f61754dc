#include "cli/InnerSandbox.h"

#include <exception>

#include "cli/Failure.h"
#include "sandbox/Server.h"
#include "sandbox/Store.h"

namespace cli {

struct InnerSandbox::Parts {
  explicit Parts(std::string const& file) : store(file, sandbox::Content::Full), server(store) {}
  sandbox::Store store;
  sandbox::Server server;
  std::string url;
};

InnerSandbox::InnerSandbox(std::string const& file) try : m_parts(std::make_unique<Parts>(file)) {
  m_parts->url = "http://127.0.0.1:" + std::to_string(m_parts->server.Start(0));
} catch (std::exception const& error) {
  throw UsageFailure("cannot keep a sandbox in " + file + ": " + error.what());
}

InnerSandbox::~InnerSandbox() { m_parts->server.Stop(); }

std::string const& InnerSandbox::Url() const { return m_parts->url; }

}  // namespace cli
