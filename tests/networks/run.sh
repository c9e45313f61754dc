#!/usr/bin/env bash
# Runs the tests of one rig in it, and the blocks of docs/networks.md that are meant for it; then
# looks for secrets in all that was printed and logged. Root does it again as a plain user.
#
#     run.sh kerberos|ntlm|tls SOURCE TESTS LUMO SANDBOX
set -euo pipefail
kind=$1 source=$2 tests=$3 lumo=$4
export LUMO_SANDBOX=$5

if [ -z "${RIG-}" ]; then  # not in the rig yet
  "$source/scripts/with-$kind" "$0" "$@"
  plain=(setpriv --reuid 65534 --regid 65534 --clear-groups)
  [ "$(id -u)" -eq 0 ] || exit 0
  "${plain[@]}" test -x "$tests" || { echo "not tried as a plain user, who cannot read $tests"; exit 0; }
  exec "${plain[@]}" "$source/scripts/with-$kind" "$0" "$@"
fi

fail() { echo "FAILED: $*"; return 1; }

# expect CODE COMMAND...: the command ends with that code.
expect() {
  local code=0
  "${@:2}" || code=$?
  [ "$code" -eq "$1" ] || fail "code $code instead of $1 from ${*:2}"
}

# with_fast_clock COMMAND...: runs it with a clock that is 20 minutes fast; but not a sanitized one,
# whose allocator asks for the time with a lock held: libfaketime, which allocates when it is asked
# for the first time, may then wait for that lock for ever.
with_fast_clock() {
  if grep -q __asan_init "$1"; then
    echo "not tried with another clock: $1 is sanitized"
  else
    LD_PRELOAD=$(echo /usr/lib/*/faketime/libfaketime.so.1) FAKETIME=+20m "$@"
  fi
}

run_kerberos() {
  cp "${KRB5CCNAME#FILE:}" "$RIG/fresh"  # there is no ticket for a server in it
  sed '/kdc =/d' "$KRB5_CONFIG" >"$RIG/no-realm.conf"
  # The tests between leave a ticket for the server behind.
  with_fast_clock "$tests" --gtest_filter='KerberosClockOff*'
  "$tests" --gtest_filter='Kerberos.*:KerberosSetups.*'
  LUMO_TEST_LOCALE=de_DE.UTF-8 LANGUAGE=de "$tests" --gtest_filter='KerberosSetups.*'
  with_fast_clock "$tests" --gtest_filter='KerberosClockOff*'
  expect 0 "$lumo" doctor --ticket --verbose
  KRB5CCNAME=FILE:/nowhere expect 3 "$lumo" doctor --ticket --json
  KRB5CCNAME=FILE:/nowhere expect 3 "$lumo" databases --ticket --verbose
  expect 0 "$lumo" databases --url "$RIG_EITHER_URL" --user ann --password-file "$RIG/password"
}

run_ntlm() {
  "$tests" --gtest_filter='Ntlm.*:NtlmSetups.*'
  expect 0 "$lumo" databases --verbose --domain WORK --user ann --password-file "$RIG/password"
  expect 3 "$lumo" databases --verbose --domain WORK --user eva --password-file "$RIG/euro"
}

run_tls() {
  "$tests" --gtest_filter='Tls.*:Proxy.*:TlsSetups.*'
  https_proxy=http://ann:wr0ng-s3cret@$RIG_PROXY expect 3 "$lumo" doctor --url "$RIG_FAR_URL" --json
  expect 0 "$lumo" doctor --verbose --ca-file "$RIG/ca.pem"
  expect 4 "$lumo" databases --verbose
  https_proxy=http://ann:wr0ng-s3cret@$RIG_PROXY expect 3 "$lumo" databases --url "$RIG_FAR_URL"
}

# Runs the blocks that begin with "```sh KIND", each in a shell of its own in the rig's folder. A
# program that asks for a password gets it; made-up addresses stand for those of the rig.
run_blocks() {
  local block
  PATH=$(dirname "$lumo"):$PATH
  cd "$RIG"
  awk -v kind="$kind" -v RS='```' 'NR % 2 == 0 && $1 == "sh" && $2 == kind {
    sub(/^[^\n]*\n/, ""); printf "%s%c", $0, 0 }' "$source/docs/networks.md" >blocks
  [ -s blocks ] || fail "docs/networks.md has no block for $kind"
  while IFS= read -r -d '' block; do
    printf '%s\n' "$block"
    block=${block//proxy.example.com:3128/${RIG_PROXY-}}
    block=${block//server.example.com:443/${LUMO_URL#*://}}
    block=${block//https:\/\/server.example.com/${RIG_FAR_URL-}}
    block=${block//https:\/\/strict.example.com/${RIG_CLIENT_URL-}}
    bash -euo pipefail -c "$block" <password || fail "that block of docs/networks.md"
  done <blocks
}

# Passwords as they are and as Basic sends them, tickets, tokens and proofs.
secrets() {
  local word
  for word in "$(cat "$RIG/password")" wr0ng-s3cret; do  # other passwords hold the first
    printf '%s\n' "$word"
    printf '%s' "$RIG_USER:$word" | base64
  done
  printf '%s\n' '(Negotiate|NTLM|Basic|Digest) [A-Za-z0-9+/]{16}' 'YII[A-Za-z0-9+/]{16}' 'TlRMTVNT'
}
find_secrets() { grep -nE -f <(secrets) "$@"; }

set +e  # which would hold inside, too, were the code asked for at once
(
  set -e
  "run_$kind"
  run_blocks
) >>"$RIG/printed.log" 2>&1
code=$?
set -e
cat "$RIG/printed.log"
find_secrets <<<"Authorization: Basic $(base64 <<<"$RIG_USER:$(cat "$RIG/password")")" >/dev/null ||
  fail "the search for secrets finds nothing"
! find_secrets "$RIG"/*.log || fail "secrets were printed or logged"
exit "$code"
