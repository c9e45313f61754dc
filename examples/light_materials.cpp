// Ten lines from a server to a table: the light and stiff metals, stiffest for their weight first.
//
//     light-materials [SERVER]        a URL or a profile; LUMO_URL without one

#include <functional>
#include <iostream>
#include <map>
#include <string>

#include <lumo/Toolkit.h>

int main(int argc, char** argv) try {
  auto const client = lumo::Client::Connect(argc > 1 ? argv[1] : "");
  auto const table = client.OpenTable("ENG_MATERIALS", "Materials");
  std::multimap<double, std::string, std::greater<>> best;
  auto const light = table.Where("density < 3000 kg/m^3").Below("Metals and alloys");
  for (lumo::Record const& metal : light.Read({"Density", "Young's modulus"})) {
    auto const stiffness = metal.Number("Young's modulus", "GPa");
    auto const density = metal.Number("Density", "kg/m^3");
    if (stiffness && density) best.emplace(*stiffness * 1000 / *density, metal.Name());
  }
  for (auto const& [merit, name] : best) std::cout << name << "  " << merit << " MPa.m^3/kg\n";
} catch (lumo::Error const& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
