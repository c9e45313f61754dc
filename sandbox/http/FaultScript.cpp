#include "sandbox/http/FaultScript.h"

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
                           {"swallow", PlannedFault::Kind::Swallow, 0, 0},
                           {"malformed", PlannedFault::Kind::Malformed, 0, 0}};
constexpr int kMostCalls = 1'000'000;
constexpr int kMostSeconds = 1'000'000'000;

int Number(std::string const& what, std::string_view text, int least, int most) {
  int value = -1;
  auto const [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || stop != text.data() + text.size() || value < least || value > most) {
    throw std::invalid_argument(what + " takes a number from " + std::to_string(least) + " to " +
                                std::to_string(most));
  }
  return value;
}

/// Reads the words of a line one after the other.
class Reader {
 public:
  explicit Reader(std::vector<std::string> const& words) : m_words(words) {}
  std::string Next() { return m_at < m_words.size() ? m_words[m_at++] : ""; }
  /// Takes the word when it is the next one.
  bool Takes(std::string_view word) {
    bool const isNext = m_at < m_words.size() && m_words[m_at] == word;
    if (isNext) ++m_at;
    return isNext;
  }
  bool IsNextCount() const { return m_at < m_words.size() && m_words[m_at][0] == 'x'; }
  bool HasMore() const { return m_at < m_words.size(); }

 private:
  std::vector<std::string> const& m_words;
  std::size_t m_at = 0;
};

PlannedFault FaultOf(Reader in, bool (*isOperation)(std::string_view)) {
  PlannedFault fault;
  fault.operation = in.Next();
  if (fault.operation != "*" && !isOperation(fault.operation)) {
    throw std::invalid_argument("there is no operation \"" + fault.operation + "\"");
  }
  std::string const kind = in.Next();
  auto const* const word = std::find_if(std::begin(kWords), std::end(kWords),
                                        [&](Word const& known) { return known.text == kind; });
  if (word == std::end(kWords)) throw std::invalid_argument("there is no fault \"" + kind + "\"");
  fault.kind = word->kind;
  if (word->most > 0) fault.number = Number(kind, in.Next(), word->least, word->most);
  if (fault.kind == PlannedFault::Kind::Status && in.Takes("retry-after")) {
    fault.retryAfter = Number("retry-after", in.Next(), 0, kMostSeconds);
  }
  if (in.Takes("every")) {
    fault.every = Number("every", in.Next(), 1, kMostCalls);
    fault.count = 0;
  }
  if (in.IsNextCount()) fault.count = Number("x", in.Next().substr(1), 1, kMostCalls);
  if (in.HasMore()) throw std::invalid_argument("\"" + in.Next() + "\" is too much");
  return fault;
}

}  // namespace

std::string PlannedFault::What() const {
  Word const& word = kWords[static_cast<std::size_t>(kind)];
  std::string text(word.text);
  if (word.most > 0) text += " " + std::to_string(number);
  if (retryAfter) text += " retry-after " + std::to_string(*retryAfter);
  return text;
}

void FaultScript::Set(std::string const& text, bool (*isOperation)(std::string_view)) {
  std::deque<PlannedFault> faults;
  std::istringstream lines(text);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    std::istringstream parts(line);
    std::vector<std::string> const words{std::istream_iterator<std::string>(parts), {}};
    if (words.empty()) continue;
    try {
      faults.push_back(FaultOf(Reader(words), isOperation));
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
    text += fault.operation + " " + fault.What();
    bool const comesAgain = fault.every > 1 || fault.count == 0;
    if (comesAgain) text += " every " + std::to_string(fault.every);
    if (fault.count > (comesAgain ? 0 : 1)) text += " x" + std::to_string(fault.count);
    text += "\n";
  }
  return text;
}

std::optional<PlannedFault> FaultScript::Next(std::string_view operation) {
  std::lock_guard<std::mutex> const lock(m_mutex);
  for (auto fault = m_faults.begin(); fault != m_faults.end(); ++fault) {
    if (fault->operation != "*" && fault->operation != operation) continue;
    if (++fault->seen < fault->every) continue;
    fault->seen = 0;
    PlannedFault met = *fault;
    if (fault->count > 0 && --fault->count == 0) m_faults.erase(fault);
    return met;
  }
  return std::nullopt;
}

}  // namespace sandbox
