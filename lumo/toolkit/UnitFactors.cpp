#include <charconv>
#include <cmath>
#include <string_view>

#include "lumo/toolkit/ConditionNode.h"
#include "lumo/toolkit/Numbers.h"

namespace lumo {
namespace {

using Factors = std::map<std::string, double>;

constexpr double kNoPower = 1e-9;
constexpr int kDeepest = 20;

class SymbolReader {
 public:
  explicit SymbolReader(std::string_view symbol) : m_rest(symbol) {}

  /// Reads up to the end, or up to the parenthesis that closes.
  Factors Read(int depth = 0) {
    Factors factors;
    double side = 1;  // -1 below the line
    while (!m_rest.empty()) {
      char const c = m_rest.front();
      if (c == ')' && depth > 0) break;
      if (c == '(' && depth < kDeepest) {
        m_rest.remove_prefix(1);
        Factors const inner = Read(depth + 1);
        if (!m_rest.empty()) m_rest.remove_prefix(1);
        double const power = side * Power();
        for (auto const& [name, one] : inner) factors[name] += one * power;
      } else if (IsJoint(c)) {
        if (c == '/') side = -1;
        m_rest.remove_prefix(1);
      } else {
        std::string const name = Name();
        factors[name] += side * Power();
      }
    }
    for (auto one = factors.begin(); one != factors.end();) {
      one = std::fabs(one->second) < kNoPower ? factors.erase(one) : std::next(one);
    }
    return factors;
  }

 private:
  static bool IsJoint(char c) {
    return std::string_view("./* ^()").find(c) != std::string_view::npos;
  }

  std::string Name() {
    std::size_t size = 0;
    while (size < m_rest.size() && !IsJoint(m_rest[size])) ++size;
    std::string name(m_rest.substr(0, size));
    m_rest.remove_prefix(size);
    return name;
  }

  double Power() {
    double power = 1;
    if (m_rest.empty() || m_rest.front() != '^') return power;
    m_rest.remove_prefix(1);
    auto const end = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), power).ptr;
    m_rest.remove_prefix(static_cast<std::size_t>(end - m_rest.data()));
    return power;
  }

  std::string_view m_rest;
};

}  // namespace

std::map<std::string, double> FactorsOf(std::string const& unit) {
  return SymbolReader(unit).Read();
}

std::string SymbolOf(std::map<std::string, double> const& factors) {
  std::string above;
  std::string below;
  for (auto const& [name, power] : factors) {
    std::string& side = power > 0 ? above : below;
    double const size = std::fabs(power);
    side += (side.empty() ? "" : ".") + name + (size == 1 ? "" : "^" + TextOf(size));
  }
  if (below.empty()) return above;
  return (above.empty() ? "1" : above) + "/" + below;
}

}  // namespace lumo
