#!/usr/bin/env bash
# What stands around the command: manual pages, completion and the recorded tour.
#
#     surroundings.sh SOURCE LUMO SANDBOX [MAN]      without MAN there are no manual pages
set -euo pipefail
source=$1 lumo=$2 sandbox=$3 man=${4-}
PATH=$(dirname "$lumo"):$(dirname "$sandbox"):$PATH
unset LUMO_URL NO_COLOR

fail() { echo "$*" >&2; exit 1; }

# Every option of every help text stands in its manual page and is completed.
# shellcheck source=/dev/null
. "$source/cli/lumo.bash"
complete_words() {
  COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
  _lumo
  printf '%s\n' "${COMPREPLY[@]}"
}
mapfile -t commands < <(complete_words lumo '')
[ ${#commands[@]} -eq 15 ] || fail "completed ${#commands[@]} commands: ${commands[*]}"
for command in "${commands[@]}"; do
  completed=$(complete_words lumo "$command" --)
  mapfile -t options < <(lumo "$command" --help | grep -oE -- '^  (-[a-z], )?--[a-z-]+' | grep -oE -- '--.*')
  [ ${#options[@]} -gt 1 ] || fail "$command has no options"
  for option in "${options[@]}"; do
    grep -qx -- "$option" <<<"$completed" || fail "$command $option is not completed"
    [ -z "$man" ] || grep -qF -- "${option//-/\\-}" "$man/lumo-$command.1" ||
      fail "$command $option is in no manual"
  done
done
[ "$(complete_words lumo get --format n)" = ndjson ] || fail "formats are not completed"

# Names that a server gives are quoted, never run.
(
  lumo() { printf '%s\n' '$(touch "$folder/run")x' "It's"; }
  timeout() { shift; "$@"; }
  folder=$(mktemp -d) LUMO_URL=http://127.0.0.1:1
  names=$(complete_words lumo tables '')
  [ ! -e "$folder/run" ] && [ "$names" = $'\\$\\(touch\\ \\"\\$folder/run\\"\\)x\nIt\\\'s' ] ||
    fail "completed $names"
  rmdir "$folder"
)

# The tour in docs is what the tour puts out today; addresses differ.
plain() { sed -E -e 's/127\.0\.0\.1:[0-9]+/127.0.0.1:PORT/g' -e 's/"port":[0-9]+,"pid":[0-9]+/"port":PORT,"pid":PID/'; }
diff <(plain <"$source/docs/tour.txt") <("$source/scripts/tour" | plain) >&2 ||
  fail "docs/tour.txt is not what scripts/tour puts out"
