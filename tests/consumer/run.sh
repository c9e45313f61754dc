#!/usr/bin/env bash
# Builds the README's first program as a user would and runs it against the sandbox; likewise one that
# uses the library before main.
#
#     run.sh find_package|pkg_config|add_subdirectory SOURCE BUILD SANDBOX
set -euo pipefail
way=$1 source=$2 build=$3 sandbox=$4
work=$build/consumer/$way
prefix=$work/installed
rm -rf "$work"
mkdir -p "$work"
awk '/^```cpp/ { inside = 1; next } /^```/ { if (inside) exit } inside' "$source/README.md" \
  >"$work/first.cpp"

case $way in
  find_package | add_subdirectory)
    [ "$way" = add_subdirectory ] || cmake --install "$build" --prefix "$prefix" >/dev/null
    cmake -S "$source/tests/consumer/$way" -B "$work/build" -G Ninja \
      -DCMAKE_PREFIX_PATH="$prefix" -DLUMO_SOURCE="$source" -DPROGRAM="$work/first.cpp" -DLUMO_JOIN_SOURCES=ON >/dev/null
    cmake --build "$work/build"
    program=$work/build/first
    ;;
  pkg_config)
    cmake --install "$build" --prefix "$prefix" >/dev/null
    PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name lumoservicelayer.pc)")
    export PKG_CONFIG_PATH
    libraries=$(pkg-config --variable=libdir lumoservicelayer)
    # shellcheck disable=SC2046
    c++ -std=c++17 "$work/first.cpp" -o "$work/first" \
      $(pkg-config --cflags --libs 'lumoservicelayer >= 1') -Wl,-rpath,"$libraries"
    program=$work/first
    ;;
esac

# The library is used before main begins and after it has ended, static or shared.
if [ "$way" != pkg_config ]; then
  output=$("$work/build/early" 2>&1)
  [ "$output" = fine ] || { echo "before and after main: $output"; exit 1; }
fi

output=$("$source/scripts/with-sandbox" "$sandbox" "$program")
[ "$output" = $'Engineering Materials\nChemical Elements' ] || { echo "printed: $output"; exit 1; }

status=0
output=$("$program" http://127.0.0.1:1 2>&1) || status=$?
[ "$status" = 1 ] && grep -qx 'GetDatabases: no reply: .*' <<<"$output" || {
  echo "without a server: $output, exit code $status"
  exit 1
}
