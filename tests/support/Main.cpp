#include <gmock/gmock.h>

#include <clocale>
#include <cstdlib>
#include <iostream>
#include <locale>

#include <lumo/LumoServiceLayer.h>

/// glibc loses a few bytes when it loads a locale from LOCPATH; the leak sanitizer asks for this.
extern "C" char const* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

/// Runs the tests with the library initialised; under the locale that LUMO_TEST_LOCALE names, so
/// that number text is tried where the decimal mark is a comma.
int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  if (char const* const name = std::getenv("LUMO_TEST_LOCALE"); name != nullptr) {
    setenv("LOCPATH", LUMO_LOCALE_PATH, 1);
    if (std::setlocale(LC_ALL, name) == nullptr) {
      std::cerr << "locale " << name << " is missing\n";
      return 1;
    }
    std::locale::global(std::locale(name));
  }
  kpxtkLumoServiceLayer::Initialize();
  int const result = RUN_ALL_TESTS();
  kpxtkLumoServiceLayer::Shutdown();
  return result;
}
