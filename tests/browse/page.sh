#!/usr/bin/env bash
# Tries the page in Chromium, where that, node and two of its packages are there:
#
#     scripts/install-packages page && npm ci --prefix tests/browse
#     page.sh LUMO LUMO-SANDBOX [FOLDER-FOR-PICTURES]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
skip() { echo "skipped: $1" >&2; exit 77; }
command -v node >/dev/null || skip "there is no node"
chromium=$(command -v chromium || command -v chromium-browser) || skip "there is no chromium"
[ -d "$here/node_modules/playwright-core" ] && [ -d "$here/node_modules/axe-core" ] ||
  skip "run npm ci --prefix tests/browse"
exec node "$here/page.mjs" "$1" "$2" "$chromium" "${3-}"
