#pragma once

#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace sandbox {

/// Something that shall go wrong with a call.
struct PlannedFault {
  enum class Kind { Fault, Status, Html, Stall, Cut, Reset, Swallow, Malformed };

  std::string operation;  ///< name of the operation; "*" for any
  Kind kind = Kind::Fault;
  int number = 0;                 ///< the status, the seconds of a stall, the bytes before a cut
  std::optional<int> retryAfter;  ///< seconds that a status tells the client to wait
  int every = 1;                  ///< of the calls that come to it, it meets each that many'th
  int seen = 0;                   ///< calls that came since the last one it met
  int count = 1;                  ///< how many calls it still meets; 0: until it is cleared

  /// Kind and number, as a line of the script has them.
  std::string What() const;
};

/// What shall go wrong with the calls to come. Calls and changes may come from several threads.
class FaultScript {
 public:
  /// Replaces the faults by those of a text with one in each line, such as "GetTables stall 5 x3"
  /// or "* status 429 retry-after 2 every 10".
  /// Throws std::invalid_argument, with the line and what is wrong with it, and then changes
  /// nothing.
  void Set(std::string const& text, bool (*isOperation)(std::string_view));
  void Clear();
  /// The faults to come, as `Set` takes them.
  std::string Text() const;
  /// The first fault that is due and meant for the operation. It is taken out when it has met all
  /// its calls. Faults below it do not count the call.
  std::optional<PlannedFault> Next(std::string_view operation);

 private:
  mutable std::mutex m_mutex;
  std::deque<PlannedFault> m_faults;
};

}  // namespace sandbox
