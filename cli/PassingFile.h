#pragma once

#include <string>

namespace cli {

/// A file of its own among the temporary ones, which goes with the object. Throws `lumo::Error`
/// when it cannot be made.
class PassingFile {
 public:
  PassingFile();
  ~PassingFile();
  PassingFile(PassingFile const&) = delete;
  PassingFile& operator=(PassingFile const&) = delete;

  std::string const& Name() const { return m_name; }
  std::string Content() const;

 private:
  std::string m_name;
};

}  // namespace cli
