#pragma once

#include <stdexcept>
#include <string>

namespace sandbox {

/// Who is to blame for a fault: the client, its SOAPAction, or the server.
enum class Blame { Client, Action, Server };

/// What is wrong with a request; its text becomes the fault's.
class Fault : public std::runtime_error {
 public:
  explicit Fault(std::string const& text, Blame blame = Blame::Client)
      : std::runtime_error(text), m_blame(blame) {}
  Blame WhoIsToBlame() const { return m_blame; }

 private:
  Blame m_blame;
};

}  // namespace sandbox
