#pragma once

#include <httplib.h>

#include <mutex>
#include <string>

#include "sandbox/http/FaultScript.h"
#include "sandbox/operations/Operations.h"
#include "sandbox/store/Store.h"

namespace sandbox {

constexpr std::size_t kMaxRequestBytes = 64UL * 1024 * 1024;
constexpr char kXmlType[] = "text/xml; charset=utf-8";

/// Answers calls of operations, one at a time, and lets them meet the faults of the script.
class ServiceCalls {
 public:
  ServiceCalls(Store& store, std::string const& namespaceBase)
      : m_store(store), m_namespaces(namespaceBase) {}

  void Answer(Service const& service, httplib::Request const& request, httplib::Response& response,
              httplib::ContentReader const& read);
  FaultScript& Faults() { return m_faults; }
  Namespaces const& SpokenNamespaces() const { return m_namespaces; }
  /// Held while an operation uses the store; for whoever else wants to.
  std::mutex& StoreMutex() { return m_storeMutex; }

 private:
  std::string Reply(Service const& service, Operation const& operation, std::string const& text);

  Store& m_store;
  std::mutex m_storeMutex;
  FaultScript m_faults;
  Namespaces m_namespaces;
};

}  // namespace sandbox
