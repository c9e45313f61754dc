#!/usr/bin/env bash
# Builds the programs of README and guides as a user would, and runs them against the sandbox; likewise
# one that uses the library before main.
#
#     run.sh find_package|pkg_config|add_subdirectory SOURCE BUILD SANDBOX
set -euo pipefail
way=$1 source=$2 build=$3 sandbox=$4
work=$build/consumer/$way
prefix=$work/installed
rm -rf "$work"
mkdir -p "$work"
"$source/tests/docs/blocks.py" "$source" --programs "$work"
cat >"$work/guide.cpp" <<'END'
#include <iostream>
#include <lumo/LumoServiceLayer.h>
#include <lumo/Toolkit.h>
int main(int, char** argv) {
  // What the pages take as given.
  std::string const url = argv[1];
  auto const auth = LumoSLAuth_Annonymous::CreateOne();
  auto const services = LumoServiceLayerServices::CreateOne(url, auth);
  auto const client = lumo::Client::Connect(url);
  auto const table = client.OpenTable("ENG_MATERIALS", "Materials");
  auto const Show = [](lumo::RowVerdict const& row) {
    std::cout << lumo::NameOf(row.kind) << ' ' << row.name << '\n';
  };
#include "guide.inc"
}
END

case $way in
  find_package | add_subdirectory)
    [ "$way" = add_subdirectory ] || cmake --install "$build" --prefix "$prefix" >/dev/null
    cmake -S "$source/tests/consumer/$way" -B "$work/build" -G Ninja \
      -DCMAKE_PREFIX_PATH="$prefix" -DLUMO_SOURCE="$source" -DPROGRAMS="$work" -DLUMO_JOIN_SOURCES=ON >/dev/null
    cmake --build "$work/build"
    programs=$work/build
    ;;
  pkg_config)
    cmake --install "$build" --prefix "$prefix" >/dev/null
    PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name lumoservicelayer.pc)")
    export PKG_CONFIG_PATH
    libraries=$(pkg-config --variable=libdir lumoservicelayer)
    for program in first guide; do
      # shellcheck disable=SC2046
      c++ -std=c++17 "$work/$program.cpp" -o "$work/$program" \
        $(pkg-config --cflags --libs 'lumotoolkit >= 1') -Wl,-rpath,"$libraries"
    done
    # shellcheck disable=SC2046
    c++ -std=c++17 "$work/exact.cpp" -o "$work/exact" \
      $(pkg-config --cflags --libs 'lumoservicelayer >= 1') -Wl,-rpath,"$libraries"
    programs=$work
    ;;
esac

# The library is used before main begins and after it has ended, static or shared.
if [ "$way" != pkg_config ]; then
  output=$("$work/build/early" 2>&1)
  [ "$output" = fine ] || { echo "before and after main: $output"; exit 1; }
fi

output=$("$source/scripts/with-sandbox" "$sandbox" "$programs/first")
grep -qx 'AW-6061-T6  25.203 MPa.m^3/kg' <<<"$output" || { echo "printed: $output"; exit 1; }
output=$("$source/scripts/with-sandbox" "$sandbox" "$programs/exact")
[ "$output" = $'Engineering Materials\nChemical Elements' ] || { echo "printed: $output"; exit 1; }
output=$(cd "$work" && "$source/scripts/with-sandbox" "$sandbox" "$programs/guide" 2>/dev/null)
for line in 'create C45' 'change PEEK' 'ENG_MATERIALS/Materials' '2690 to 2730 kg/m^3' 'at 130 degC: 2[0-9.]* MPa' '5 of 5'; do
  grep -qx "$line" <<<"$output" || { echo "the guide does not print $line: $output"; exit 1; }
done

# `refused PROGRAM TEXT`: without a server the program says so and returns 1.
refused() {
  local output status=0
  output=$("$programs/$1" http://127.0.0.1:1 2>&1) || status=$?
  [ "$status" = 1 ] && grep -q "$2" <<<"$output" || {
    echo "$1 without a server: $output, exit code $status"
    exit 1
  }
}
refused exact '^GetDatabases: no reply: '
refused first '^no reply from http://127.0.0.1:1: '
