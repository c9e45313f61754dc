#include "cli/PassingFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "cli/Failure.h"

namespace cli {

PassingFile::PassingFile() : m_name(std::filesystem::temp_directory_path() / "lumo-XXXXXX") {
  int const file = mkstemp(m_name.data());
  if (file < 0) Refuse("cannot write " + m_name + ": " + std::strerror(errno));
  close(file);
}

PassingFile::~PassingFile() { std::remove(m_name.c_str()); }

std::string PassingFile::Content() const {
  std::ifstream in(m_name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace cli
