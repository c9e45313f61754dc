#!/usr/bin/env bash
# The program's options, messages and manual page.
#
#     program.sh SANDBOX [MAN]      without MAN there is no manual page
set -euo pipefail
sandbox=$1 man=${2-}
unset LUMO_SANDBOX_PASSWORD

fail() { echo "$*" >&2; exit 1; }

# `refuses STATUS TEXT OPTION...`: ends with that status and the text in its only line.
refuses() {
  local status=0 message
  message=$("$sandbox" --ttl 1 "${@:3}" 2>&1 >/dev/null) || status=$?
  [ "$status" -eq "$1" ] || fail "${*:3}: status $status"
  [[ $message == "lumo-sandbox: "*"$2"* && $message != *$'\n'* ]] || fail "${*:3}: $message"
}
refuses 2 'not in range 0 to 65535' --port 70000
refuses 2 'not in range' --records many
refuses 2 'takes one of empty, minimal, full' --seed some
refuses 2 'takes one of none, basic, digest' --log-on ticket
refuses 2 'must not have a colon' --user a:b
refuses 2 'is not a URI' --namespace 'a b'
refuses 2 'is empty' --db ''
refuses 2 '--wrong' --wrong
refuses 2 'stray' stray
refuses 2 'needs --log-on' --password-file /dev/null
refuses 2 'the log-on needs a password' --log-on digest
refuses 2 'cannot read a password' --log-on basic --password-file /nowhere/file
refuses 1 'cannot write to /nowhere/file' --log=/nowhere/file
refuses 1 'cannot open /nowhere/file' --db /nowhere/file
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
cp "$0" "$folder/script"
refuses 1 'is not a database' --db "$folder/script"

[[ $("$sandbox" --version) == "lumo-sandbox "[0-9]* ]] || fail "no version"
mapfile -t options < <("$sandbox" --help | grep -oE -- '^  --[a-z-]+' | grep -oE -- '--.*')
[ ${#options[@]} -ge 13 ] || fail "${#options[@]} options: ${options[*]}"
[ -n "$man" ] || exit 0
for option in "${options[@]}"; do
  grep -qF -- "${option//-/\\-}" "$man" || fail "$option is not in the manual"
done
for section in ENVIRONMENT FILES '"EXIT STATUS"' EXAMPLES; do
  grep -qx ".SH $section" "$man" || fail "the manual has no section $section"
done
