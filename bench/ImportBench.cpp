// Prints what an import of 5,000 rows costs the program that imports: time, CPU for each row, calls
// and peak memory, for new records, for changes and for rows that are there already. The server is
// another process, a sandbox:
//
//     scripts/with-sandbox build/release/sandbox/lumo-sandbox build/release/bench/lumo-bench-import
#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "lumo/Toolkit.h"

namespace {

constexpr int kRows = 5000;

double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto const seconds = [](timeval const& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

lumo::Import RowsFor(lumo::Table const& table, int shift) {
  lumo::Import import = table.NewImport();
  for (int i = 0; i < kRows; ++i) {
    double const figure = i + shift;
    std::string const number = std::to_string(i);
    std::vector<std::pair<std::string, lumo::Value>> values;
    values.emplace_back("Density", lumo::Range{figure, figure + 1, "kg/m^3", false});
    values.emplace_back("Price", lumo::Quantity{figure, "EUR/kg", false});
    values.emplace_back("Recyclable", i % 2 == 0);
    values.emplace_back("Number of suppliers", std::int64_t{i});
    values.emplace_back("Designation", "Number " + number);
    import.Add("Imported", "Row " + number, values);
  }
  return import;
}

}  // namespace

int main(int count, char** texts) try {
  if (count != 2) return 2;
  std::atomic<int> calls{0};
  lumo::ConnectOptions connect;
  connect.credentials = lumo::Anonymous{};
  connect.onCall = [&calls](lumo::CallEvent const& /*call*/) { ++calls; };
  auto const table =
      lumo::Client::Connect(texts[1], connect).OpenTable("ENG_MATERIALS", "Materials");
  std::string folder = std::filesystem::temp_directory_path() / "lumo-bench-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) return 1;
  lumo::ImportOptions options;
  options.makesFolders = true;
  std::pair<char const*, int> const kRuns[] = {{"new", 1}, {"changed", 2}, {"as they were", 2}};
  bool isComplete = true;
  for (auto const& [what, shift] : kRuns) {
    calls = 0;
    double const cpu = CpuSeconds();
    auto const begin = std::chrono::steady_clock::now();
    isComplete = RowsFor(table, shift).Run(folder + "/" + what, options).IsComplete() && isComplete;
    std::chrono::duration<double> const time = std::chrono::steady_clock::now() - begin;
    std::printf("  %d rows, %-12s  %5.2f s  %5.0f us of CPU a row  %4d calls  %4.0f MB\n", kRows,
                what, time.count(), (CpuSeconds() - cpu) * 1e6 / kRows, calls.load(),
                PeakMegabytes());
  }
  std::filesystem::remove_all(folder);
  return isComplete ? 0 : 1;
} catch (std::exception const& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
