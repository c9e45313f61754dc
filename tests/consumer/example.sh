#!/usr/bin/env bash
# Runs the examples against the sandbox, and one against nothing.
set -euo pipefail
source=$1 sandbox=$2 examples=$3
run() { "$source/scripts/with-sandbox" "$sandbox" "$examples/$1" "${@:2}"; }

output=$(run list-databases)
grep -qx 'Engineering Materials       database                    key ENG_MATERIALS' <<<"$output"
grep -qx '  Materials                 table                       37 attributes' <<<"$output"
grep -qE '^    Actinides +subset +identity [0-9]+$' <<<"$output"

# A reader that stops early, as grep -q does, would end the example with a broken pipe.
holds() { grep -E "$1" <<<"$output" >&2; }
output=$(run walk-tree ENG_MATERIALS Materials)
holds '^    Aluminium alloys$'
holds '^      AW-6061-T6  \(Aluminium, EN AW-6061, wrought, T6\)$'
output=$(run print-attributes ENG_MATERIALS Materials)
holds '^Melting point +RNGE +degC +125 to 2500$'
output=$(run search-table ENG_MATERIALS Materials Density 1 g/cm^3)
holds '^2 records$'
holds '^  Density +940 - 965 kg/m\^3$'
output=$(run import-material ENG_MATERIALS Materials Wood Ash 0.6 0.75 g/cm^3)
holds '^Density: 600 to 750 kg/m\^3$'
output=$(run export-card ENG_MATERIALS Materials AW-6061-T6 card-2)
holds '^\*MATERIAL, AW-6061-T6$'

# These take the server's address first.
first() { "$source/scripts/with-sandbox" "$sandbox" bash -c '"$1" "${@: -1}" "${@:2:$#-2}"' - "$examples/$1" "${@:2}"; }
output=$(first read-curve AW-6061-T6 130)
holds '^Condition: T6, Temperature 130 degC: 23[0-9.]+ MPa$'
output=$(first bulk-read ENG_MATERIALS Materials Density 2>&1)
holds '/AW-6061-T6	2[67][0-9.]+ kg/m\^3$'

status=0
errors=$("$examples/list-databases" http://127.0.0.1:1 2>&1) || status=$?
[ "$status" -eq 1 ]
grep -q '^GetDatabases: no reply: .*[Cc]onnect' <<<"$errors"
grep -q '^GetDatabases: Could not access the response object\.' <<<"$errors"
