#include "FaultScript.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

namespace sandbox {
namespace {

struct Word {
  std::string_view text;
  PlannedFault::Kind kind;
  int least;  ///< of the number that follows
  int most;   ///< 0: no number follows
};

constexpr Word kWords[] = {{"fault", PlannedFault::Kind::Fault, 0, 0},
                           {"status", PlannedFault::Kind::Status, 200, 599},
                           {"html", PlannedFault::Kind::Html, 0, 0},
                           {"stall", PlannedFault::Kind::Stall, 0, 3600},
                           {"cut", PlannedFault::Kind::Cut, 0, 1'000'000'000},
                           {"reset", PlannedFault::Kind::Reset, 0, 0},
                           {"malformed", PlannedFault::Kind::Malformed, 0, 0}};
constexpr int kMostCalls = 1'000'000;

int Number(std::string const& what, std::string_view text, int least, int most) {
  int value = -1;
  auto const [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || stop != text.data() + text.size() || value < least || value > most) {
    throw std::invalid_argument(what + " takes a number from " + std::to_string(least) + " to " +
                                std::to_string(most));
  }
  return value;
}

PlannedFault FaultOf(std::vector<std::string> const& words, bool (*isOperation)(std::string_view)) {
  PlannedFault fault;
  fault.operation = words[0];
  if (fault.operation != "*" && !isOperation(fault.operation)) {
    throw std::invalid_argument("there is no operation \"" + fault.operation + "\"");
  }
  std::string const kind = words.size() > 1 ? words[1] : "";
  auto const* const word = std::find_if(std::begin(kWords), std::end(kWords),
                                        [&](Word const& known) { return known.text == kind; });
  if (word == std::end(kWords)) throw std::invalid_argument("there is no fault \"" + kind + "\"");
  fault.kind = word->kind;
  std::size_t next = 2;
  if (word->most > 0) {
    std::string const number = words.size() > next ? words[next++] : "";
    fault.number = Number(kind, number, word->least, word->most);
  }
  if (words.size() > next && words[next][0] == 'x') {
    fault.count = Number("x", words[next++].substr(1), 1, kMostCalls);
  }
  if (words.size() > next) throw std::invalid_argument("\"" + words[next] + "\" is too much");
  return fault;
}

}  // namespace

void FaultScript::Set(std::string const& text, bool (*isOperation)(std::string_view)) {
  std::deque<PlannedFault> faults;
  std::istringstream lines(text);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    std::istringstream parts(line);
    std::vector<std::string> const words{std::istream_iterator<std::string>(parts), {}};
    if (words.empty()) continue;
    try {
      faults.push_back(FaultOf(words, isOperation));
    } catch (std::invalid_argument const& error) {
      throw std::invalid_argument("line " + std::to_string(number) + ": " + error.what());
    }
  }
  std::lock_guard<std::mutex> const lock(m_mutex);
  m_faults = std::move(faults);
}

void FaultScript::Clear() {
  std::lock_guard<std::mutex> const lock(m_mutex);
  m_faults.clear();
}

std::string FaultScript::Text() const {
  std::lock_guard<std::mutex> const lock(m_mutex);
  std::string text;
  for (PlannedFault const& fault : m_faults) {
    Word const& word = kWords[static_cast<std::size_t>(fault.kind)];
    text += fault.operation + " " + std::string(word.text);
    if (word.most > 0) text += " " + std::to_string(fault.number);
    if (fault.count > 1) text += " x" + std::to_string(fault.count);
    text += "\n";
  }
  return text;
}

std::optional<PlannedFault> FaultScript::Next(std::string_view operation) {
  std::lock_guard<std::mutex> const lock(m_mutex);
  auto const found = std::find_if(m_faults.begin(), m_faults.end(), [&](PlannedFault const& fault) {
    return fault.operation == "*" || fault.operation == operation;
  });
  if (found == m_faults.end()) return std::nullopt;
  PlannedFault fault = *found;
  if (--found->count == 0) m_faults.erase(found);
  return fault;
}

}  // namespace sandbox
