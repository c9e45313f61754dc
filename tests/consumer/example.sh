#!/usr/bin/env bash
# Runs the example against the sandbox, and against nothing.
set -euo pipefail
source=$1 sandbox=$2 example=$3

output=$("$source/scripts/with-sandbox" "$sandbox" "$example")
grep -qx 'Engineering Materials       database                    key ENG_MATERIALS' <<<"$output"
grep -qx '  Materials                 table                       32 attributes' <<<"$output"
grep -qE '^    Actinides +subset +identity [0-9]+$' <<<"$output"

status=0
errors=$("$example" http://127.0.0.1:1 2>&1) || status=$?
[ "$status" -eq 1 ]
grep -q '^Code 500: .*[Cc]onnect' <<<"$errors"
grep -q '^GetDatabases: Could not access the response object\.' <<<"$errors"
