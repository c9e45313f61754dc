// Reads a curve between its points: a strength at a temperature.
//
//     read-curve SERVER RECORD TEMPERATURE     such as "AW-6061-T6 130", in degC

#include <cstdlib>
#include <iostream>
#include <string>
#include <variant>

#include <lumo/Toolkit.h>

namespace {

/// What holds for the whole curve: "Condition: T6, ".
void Print(lumo::Parameter const& parameter) {
  std::cout << parameter.name << ": ";
  if (auto const* const number = std::get_if<double>(&parameter.value)) std::cout << *number;
  if (auto const* const word = std::get_if<std::string>(&parameter.value)) std::cout << *word;
  std::cout << (parameter.unit.empty() ? "" : " ") << parameter.unit << ", ";
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 4) {
    std::cerr << "usage: read-curve SERVER RECORD TEMPERATURE\n";
    return 2;
  }
  double const temperature = std::atof(argv[3]);
  auto const client = lumo::Client::Connect(argv[1]);
  auto const table = client.OpenTable("ENG_MATERIALS", "Materials");
  lumo::Record const record = table.Get(argv[2], {"Yield strength against temperature"});
  auto const* const curves = std::get_if<lumo::Curves>(&record.Values()[0]);
  if (curves == nullptr) {
    std::cerr << record.Name() << " has no such curve\n";
    return 1;
  }
  for (lumo::Curve const& curve : curves->curves) {
    for (lumo::Parameter const& parameter : curve.parameters) Print(parameter);
    std::cout << curve.xName << ' ' << temperature << ' ' << curve.xUnit << ": ";
    if (auto const strength = curve.At(temperature)) {
      std::cout << *strength << ' ' << curve.yUnit << '\n';
    } else {
      std::cout << "outside of the curve\n";
    }
  }
} catch (lumo::Error const& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
