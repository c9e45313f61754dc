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
[ ${#commands[@]} -eq 17 ] || fail "completed ${#commands[@]} commands: ${commands[*]}"
for command in "${commands[@]}"; do
  completed=$(complete_words lumo "$command" --)
  mapfile -t options < <(lumo "$command" --help | grep -oE -- '^  (-[a-z], )?--[a-z-]+' | grep -oE -- '--.*')
  [ ${#options[@]} -gt 1 ] || [ "$command" = help ] || fail "$command has no options"
  for option in "${options[@]}"; do
    grep -qx -- "$option" <<<"$completed" || fail "$command $option is not completed"
    [ -z "$man" ] || grep -qF -- "${option//-/\\-}" "$man/lumo-$command.1" ||
      fail "$command $option is in no manual"
  done
done
[ "$(complete_words lumo get --format n)" = ndjson ] || fail "formats are not completed"
[ "$(complete_words lumo get --format pl)" = plot ] || fail "the last format is not completed"
# The limit of time is for people who wait, not for builds that are slow.
timeout() { shift; "$@"; }
on_table() {
  COMP_LINE="lumo get ENG_MATERIALS Materials --sandbox $*"
  complete_words lumo get ENG_MATERIALS Materials --sandbox "$@"
}
[ "$(on_table -a Den)" = Density ] || fail "attributes are not completed: $(on_table -a Den)"
[ "$(on_table --unit-system "US")" = 'US\ customary' ] || fail "unit systems are not completed"
[ "$(on_table --subset "Poly")" = Polymers ] || fail "subsets are not completed"
[ "$(on_table --folder "Polymers/Thermop")" = Polymers/Thermoplastics ] || fail "folders are not completed"
[ "$(on_table PEE)" = PEEK ] || fail "records are not completed"
[ "$(on_table --columns fold)" = folder ] || fail "columns are not completed"
[ "$(on_table --columns Dens)" = Density ] || fail "columns are not completed by attributes"
[ "$(on_table --currency US)" = USD ] || fail "currencies are not completed"
COMP_LINE='lumo export ENG_MATERIALS Materials --sandbox -e card'
exporters=$(complete_words lumo export ENG_MATERIALS Materials --sandbox -e card-)
[ "$exporters" = "$(lumo export ENG_MATERIALS Materials --sandbox -f csv --no-headings |
  cut -d, -f1 | grep '^card-')" ] && [ -n "$exporters" ] || fail "exporters are not completed: $exporters"
# A server on the line comes before LUMO_URL; bash breaks its words at the colons.
(
  "$source/scripts/with-sandbox" "$sandbox" bash -c '
    . "$1/cli/lumo.bash"
    timeout() { shift; "$@"; }
    export LUMO_URL=http://127.0.0.1:1
    COMP_LINE="lumo tables --url $2 ENG"
    COMP_WORDS=(lumo tables --url http : "${2#http:}" ENG) COMP_CWORD=6 COMPREPLY=()
    _lumo
    [ "${COMPREPLY[*]}" = ENG_MATERIALS ] || exit 1
    COMP_LINE="lumo tables --url='\''$2'\'' ENG"
    COMP_WORDS=(lumo tables --url = http : "${2#http:}" ENG) COMP_CWORD=7 COMPREPLY=()
    _lumo
    [ "${COMPREPLY[*]}" = ENG_MATERIALS ]' bash "$source"
) || fail "--url on the line is not asked"
COMP_LINE=''

# Names that a server gives are quoted, never run.
(
  lumo() { printf '%s\n' '$(touch "$folder/run")x' "It's"; }
  folder=$(mktemp -d) LUMO_URL=http://127.0.0.1:1
  names=$(complete_words lumo tables '')
  [ ! -e "$folder/run" ] && [ "$names" = $'\\$\\(touch\\ \\"\\$folder/run\\"\\)x\nIt\\\'s' ] ||
    fail "completed $names"
  rmdir "$folder"
)

# A data frame has numbers in every column with a unit, and in no other way as many as there are.
if /usr/bin/python3 -c 'import pandas' 2>/dev/null; then
  lumo get ENG_MATERIALS Materials --sandbox -f csv --ranges split --no-files |
    /usr/bin/python3 -c '
import pandas, sys
frame = pandas.read_csv(sys.stdin)
columns = [name for name in frame.columns if " [" in name]
assert len(frame) == 285 and len(columns) > 30, (len(frame), columns)
words = [name for name in columns if not pandas.api.types.is_numeric_dtype(frame[name])]
assert not words, words
assert (frame["Density low [kg/m^3]"] <= frame["Density high [kg/m^3]"]).all()
' || fail "pandas does not take the split form"
fi

# The tour in docs is what the tour puts out today; addresses differ.
plain() { sed -E -e 's/127\.0\.0\.1:[0-9]+/127.0.0.1:PORT/g' -e 's/"port":[0-9]+,"pid":[0-9]+/"port":PORT,"pid":PID/'; }
diff <(plain <"$source/docs/tour.txt") <("$source/scripts/tour" | plain) >&2 ||
  fail "docs/tour.txt is not what scripts/tour puts out"
