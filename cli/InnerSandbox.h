#pragma once

#include <memory>
#include <string>

namespace cli {

/// A sandbox server inside this process; it ends with the object.
class InnerSandbox {
 public:
  /// Keeps the data in that file, or in memory for ":memory:"; speaks the namespace of the build
  /// unless another base is given. Throws `lumo::Error` when it cannot.
  explicit InnerSandbox(std::string const& file, std::string const& namespaceBase = "");
  ~InnerSandbox();
  std::string const& Url() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace cli
