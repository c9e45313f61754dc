#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sandbox/operations/Handlers.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

/// An operation of the service layer.
struct Operation {
  std::string_view service;
  std::string_view name;
  std::string_view rootTag;  ///< empty: the body must be empty
  Handler handler;

  /// Name of the reply's element.
  std::string ResponseTag() const;
  /// The SOAPAction by which it is called.
  std::string Action(Namespaces const& namespaces) const;
};

std::vector<Service> const& Services();
std::vector<Operation> const& Operations();
/// The operation of that name; null when there is none.
Operation const* FindOperation(std::string_view name);
/// The operation that a SOAPAction calls; null when the service has no such one.
Operation const* FindByAction(Service const& service, Namespaces const& namespaces,
                              std::string const& action);

}  // namespace sandbox
