#!/usr/bin/env bash
# The check of includes passes the project and finds one wrong line in a tree that has it.
set -euo pipefail
source=$1 tree=$2
"$source/scripts/check-includes"
while read -r file line; do
  rm -rf "$tree"
  mkdir -p "$tree/$(dirname "$file")"
  printf '%s\n' "$line" >"$tree/$file"
  if "$source/scripts/check-includes" "$tree"; then
    echo "not found: $line in $file"
    exit 1
  fi
done <<'WRONG'
lumo/xml/A.h #include "lumo/types/B.h"
lumo/session/A.cpp #include "lumo/services/browse/B.h"
lumo/session/A.cpp #  include "lumo/values/B.h"
lumo/services/browse/A.h #include "lumo/services/search/B.h"
lumo/newroom/A.h #include "lumo/xml/B.h"
sandbox/A.cpp #include <lumo/LumoServiceLayer.h>
cli/A.cpp #include "lumo/session/LumoSession.h"
cli/A.cpp #include "sandbox/http/Server.h"
sandbox/wire/A.cpp #include "lumo/xml/NodeReader.h"
sandbox/model/A.h #include "sandbox/operations/Handlers.h"
sandbox/operations/browse/A.cpp #include "sandbox/operations/search/Scope.h"
WRONG
