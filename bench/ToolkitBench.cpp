// Prints what a read of many records with five attributes costs the program that reads: CPU for
// each record, on all of its threads, and peak memory. The server is a process of its own.
//
//     lumo-bench-toolkit             20,000 and 100,000 records
//     lumo-bench-toolkit --serve N   serves N records until its standard input ends
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>

#include "lumo/Toolkit.h"
#include "tests/support/TinyService.h"

namespace {

constexpr double kMostMicroseconds = 15;
constexpr double kMostMegabytes = 60;

struct Cost {
  double microseconds;  // of CPU for each record
  double megabytes;     // at the peak
};

struct Pipe {
  Pipe() {
    if (pipe(ends) != 0) std::abort();
  }
  int ends[2];
};

/// Serves until the pipe of the process that wants it ends.
void Serve(int records, int tellTo, int lifeline) {
  TinyService const service(records);
  std::string const url = service.Url() + "\n";
  if (write(tellTo, url.data(), url.size()) < 0) std::abort();
  char byte = 0;
  while (read(lifeline, &byte, 1) > 0) {
  }
}

std::string ReadLine(int from) {
  std::string line;
  for (char byte = 0; read(from, &byte, 1) == 1 && byte != '\n';) line += byte;
  return line;
}

Cost ReadAll(std::string const& url, int records) {
  lumo::ConnectOptions options;
  options.credentials = lumo::Anonymous{};
  double sum = 0;
  int count = 0;
  for (lumo::Record const& record : lumo::Client::Connect(url, options)
                                        .OpenTable("DB", "Records")
                                        .All()
                                        .Read({"Name", "Density", "Strength", "Count", "Good"})) {
    sum += record.Number("Density", "kg/m^3").value_or(0);
    ++count;
  }
  if (count != records || sum <= 0) std::abort();
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto const microseconds = [](timeval const& time) {
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_usec);
  };
  return {(microseconds(usage.ru_utime) + microseconds(usage.ru_stime)) / records,
          static_cast<double>(usage.ru_maxrss) / 1024};
}

/// In a process that has done nothing else.
Cost Measure(int records) {
  Pipe const address;
  Pipe const life;
  pid_t const server = fork();
  if (server == 0) {
    close(life.ends[1]);
    Serve(records, address.ends[1], life.ends[0]);
    std::_Exit(0);
  }
  std::string const url = ReadLine(address.ends[0]);
  Pipe const result;
  pid_t const reader = fork();
  if (reader == 0) {
    Cost const cost = ReadAll(url, records);
    std::_Exit(write(result.ends[1], &cost, sizeof cost) == sizeof cost ? 0 : 1);
  }
  close(result.ends[1]);
  Cost cost{};
  bool const isRead = read(result.ends[0], &cost, sizeof cost) == sizeof cost;
  waitpid(reader, nullptr, 0);
  close(life.ends[1]);
  waitpid(server, nullptr, 0);
  if (!isRead) std::abort();
  return cost;
}

}  // namespace

int main(int count, char** texts) try {
  if (count == 3 && std::strcmp(texts[1], "--serve") == 0) {
    Serve(std::atoi(texts[2]), STDOUT_FILENO, STDIN_FILENO);
    return 0;
  }
  for (int const records : {20000, 100000}) {
    Cost const cost = Measure(records);
    std::printf("  %-36s %5.2f times, %.1f us a record\n",
                ("ReadRecords/Cpu/" + std::to_string(records)).c_str(),
                cost.microseconds / kMostMicroseconds, cost.microseconds);
    std::printf("  %-36s %5.2f times, %.1f MB\n",
                ("ReadRecords/PeakMemory/" + std::to_string(records)).c_str(),
                cost.megabytes / kMostMegabytes, cost.megabytes);
  }
} catch (std::exception const& error) {
  (void)std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
