#!/usr/bin/env bash
# The check of the binary interface finds what would break a program that is already linked, and leaves
# alone what would not: tried on a library of one public class, in a copy.
set -euo pipefail
source=$1 copy=$2
command -v abidiff >/dev/null || exit 77
class=lumo/platform/http/HttpMessage
sed 's/@LUMO_ABI@/1/' "$source/lumo/exports.map.in" >"${copy:?}.map"

# `check EXPRESSION HOW`: with both files of the class changed by sed, the check ends well or ill.
check() {
  rm -rf "$copy"
  mkdir -p "$copy"
  cp -r "$source/lumo" "$copy/lumo"
  for file in "$copy/$class.h" "$copy/$class.cpp"; do sed -i -E "$1" "$file"; done
  [ -z "$1" ] || ! cmp -s "$source/$class.h" "$copy/$class.h" || { echo "changes nothing: $1"; exit 1; }
  c++ -std=c++17 -g -femit-class-debug-always -O0 -fPIC -shared -fvisibility=hidden -fvisibility-inlines-hidden -I"$copy" \
    -Wl,--version-script="$copy.map" -Wl,-soname,libmessage.so.1 "$copy/$class.cpp" -o "$copy/libmessage.so"
  local how=fine
  "$source/scripts/check-abi" ${update:-} "$copy/libmessage.so" "$copy/lumo" "$copy.abi.xz" \
    >"$copy/output" 2>&1 || how=broken
  [ "$how" = "$2" ] || { cat "$copy/output"; echo "$how, but should be $2: $1"; exit 1; }
}

update=--update check '' fine
! xz -dc "$copy.abi.xz" | grep "='/" || { echo "keeps places on this machine"; exit 1; }
check '' fine
check 's/^ private:/  void Added() const;\n private:/; s/^(void HttpMessage::ForgetExchange)/void HttpMessage::Added() const {}\n\1/' fine
check 's/bool m_isWrite = false;/&\n  double m_added = 0;/' broken
grep -q "insertion" "$copy/output" && grep -q 'double m_added' "$copy/output" || { cat "$copy/output"; exit 1; }
check 's/bool m_isWrite = false;/long m_isWrite = 0;/' broken
check 's/void (HttpMessage::)?ForgetExchange/void \1DropExchange/' broken
check 's/^  void ForgetExchange/  virtual void ForgetExchange/' broken
