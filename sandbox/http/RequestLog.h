#pragma once

#include <cstddef>
#include <iosfwd>
#include <mutex>
#include <string>

namespace sandbox {

/// What the log tells of a request. Headers are left out, for they may hold a proof of identity.
struct RequestReport {
  std::string operation;
  int status = 0;
  std::size_t bytesIn = 0;
  std::size_t bytesOut = 0;
  double milliseconds = 0;
  std::string outcome;  ///< whether a call was done, and the fault that it met
  std::string body;
};

/// Writes requests for people to read; from several threads at once, too.
class RequestLog {
 public:
  explicit RequestLog(std::ostream& out) : m_out(out) {}
  /// A line with the figures, below it the body, indented.
  void Write(RequestReport const& report);

 private:
  std::mutex m_mutex;
  std::ostream& m_out;
};

}  // namespace sandbox
