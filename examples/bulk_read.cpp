// Reads attributes of all records of a table, tells how far it has come, and ends at Ctrl-C with
// what was read so far.
//
//     bulk-read SERVER DATABASE TABLE ATTRIBUTE... > values.txt

#include <csignal>
#include <iostream>
#include <string>
#include <vector>

#include <lumo/Toolkit.h>

namespace {

lumo::CancellationToken const interrupt;

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 5) {
    std::cerr << "usage: bulk-read SERVER DATABASE TABLE ATTRIBUTE...\n";
    return 2;
  }
  std::signal(SIGINT, [](int) { interrupt.Cancel(); });
  lumo::ReadOptions options;
  options.cancel = interrupt;
  options.onProgress = [](lumo::Progress const& progress) {
    std::cerr << '\r' << progress.recordsDone << " records, " << progress.bytes / 1000 << " kB, "
              << progress.workers << " calls at once ";
  };
  auto const client = lumo::Client::Connect(argv[1]);
  auto const table = client.OpenTable(argv[2], argv[3]);
  std::vector<std::string> const attributes(argv + 4, argv + argc);
  for (lumo::Record const& record : table.All().Read(attributes, options)) {
    std::cout << record.Folder() << '/' << record.Name();
    for (lumo::Value const& value : record.Values()) {
      std::cout << '\t';
      if (auto const number = lumo::NumberIn(value)) {
        std::cout << *number << ' ' << lumo::UnitIn(value);
      }
    }
    std::cout << '\n';
  }
  std::cerr << '\n';
} catch (lumo::Error const& error) {
  std::cerr << '\n' << error.what() << '\n';
  return error.Code() == lumo::ErrorCode::Cancelled ? 130 : 1;
}
