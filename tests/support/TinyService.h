#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "tests/support/RawServer.h"

/// A service layer with one table of made-up records, for trials with faults and many threads:
/// database "DB", table "Records", attributes "Name" (text), "Density" (kg/m^3), "Strength" (MPa, a
/// range), "Count" and "Good"; record 12 is "R12", a hundred in each folder "F0", "F1"...
class TinyService {
 public:
  /// What goes wrong with a call: it has answered itself, and the connection ends, when it is true.
  using Fault = std::function<bool(RawConnection&, int call, std::string const& operation,
                                   std::string const& request)>;

  explicit TinyService(int records, Fault fault = nullptr);

  std::string Url() const { return m_server.Url(); }
  int Calls() const { return m_calls; }
  /// Requests for values that came, those that were not answered too.
  int Reads() const { return m_reads; }
  /// Most calls that were under way at once.
  int MostAtOnce() const { return m_mostAtOnce; }

 private:
  void Serve(RawConnection& connection);
  std::string Reply(std::string const& operation, std::string const& request) const;
  std::string Children(int parent) const;

  int m_records;
  Fault m_fault;
  std::atomic<int> m_calls{0};
  std::atomic<int> m_reads{0};
  std::atomic<int> m_now{0};
  std::atomic<int> m_mostAtOnce{0};
  RawServer m_server;
};

/// Identities of the records that a request asks for.
std::vector<int> RecordsIn(std::string const& request);
