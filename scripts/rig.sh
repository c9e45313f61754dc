# What with-kerberos, with-ntlm and with-tls have in common; they source it. A rig starts servers on
# free ports of 127.0.0.1, runs a command and ends the servers with it. All files are in $RIG, a
# folder that goes at the end. Where a program is missing, the rig says so and ends with code 77.
# shellcheck shell=bash
set -euo pipefail
PATH=$PATH:/usr/sbin:/sbin
scripts=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
rig=$(basename "$0")
[ $# -gt 0 ] || { echo "usage: $rig COMMAND [ARGUMENT...]" >&2; exit 2; }

RIG=$(mktemp -d)
export RIG
chmod 711 "$RIG"  # a web server that runs as another user goes through it
servers=()

finish() {
  [ ${#servers[@]} -eq 0 ] || kill "${servers[@]}" 2>/dev/null || true
  wait 2>/dev/null || true
  rm -rf "$RIG"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# skip WHAT: ends the rig because that is not on this machine.
skip() {
  echo "$rig: skipped, there is no $1 here: scripts/install-packages networks" >&2
  exit 77
}

# need FILE...: programs, by name or path, and other files that must be there.
need() {
  local file
  for file; do
    command -v "$file" >/dev/null || [[ $file == */* && -e $file ]] || skip "$file"
  done
}

# free_ports NAME...: puts a port of its own that nobody uses into each variable. They lie below
# those that the system gives to outgoing connections.
free_ports() {
  local variable candidate taken=' '
  for variable; do
    until candidate=$((16000 + RANDOM % 16000))
          [[ $taken != *" $candidate "* ]] && ! answers "$candidate"; do :; done
    taken+="$candidate "
    printf -v "$variable" %s "$candidate"
  done
}

answers() { (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null; }

# serve NAME PORT COMMAND...: starts a server, which ends with this script whatever happens to it,
# and waits until it answers. What it prints goes to $RIG/NAME.log.
serve() {
  local name=$1 port=$2 pid
  setpriv --pdeathsig TERM "${@:3}" >>"$RIG/$name.log" 2>&1 </dev/null &
  pid=$!
  servers+=("$pid")
  for _ in {1..500}; do
    answers "$port" && return
    kill -0 "$pid" 2>/dev/null || break
    sleep 0.02
  done
  echo "$rig: $name did not start:" >&2
  cat "$RIG/$name.log" >&2
  exit 1
}

# Ends the server that was started last.
stop_server() {
  kill "${servers[-1]}"
  wait "${servers[-1]}" 2>/dev/null || true
  unset 'servers[-1]'
}

# The service layer behind the rig; $upstream is its address, $RIG/requests.log what reaches it.
serve_sandbox() {
  local sandbox=${LUMO_SANDBOX:-$scripts/../build/dev/sandbox/lumo-sandbox} port
  [ -e "$sandbox" ] || sandbox=lumo-sandbox
  need "$sandbox"
  free_ports port
  serve sandbox "$port" "$sandbox" --port "$port" --seed minimal --log="$RIG/requests.log"
  upstream=http://127.0.0.1:$port
}

# A fresh password in $RIG/password, which no command line shows.
make_password() {
  password=$(head -c 12 /dev/urandom | od -An -tx1 | tr -d ' \n')
  (umask 077 && echo "$password" >"$RIG/password")
}

# serve_apache PORT MODULE... <CONFIGURATION: a web server with these modules beside the usual ones.
# $RIG/access.log has a line for each request: status, number on its connection from 0, the way of
# log-on or -, what was asked.
serve_apache() {
  local port=$1 folder module user=
  need apache2
  folder=$(dirname "$(dirname "$(readlink -f "$(command -v apache2)")")")/lib/apache2/modules
  shift
  if [ "$(id -u)" -eq 0 ]; then
    user=$'User www-data\nGroup www-data'
    install -d -o www-data "$RIG/apache"
  else
    mkdir "$RIG/apache"
  fi
  {
    for module in mpm_event authn_core authz_core authz_user setenvif proxy proxy_http "$@"; do
      need "$folder/mod_$module.so"
      echo "LoadModule ${module}_module $folder/mod_$module.so"
    done
    cat <<END
$user
ServerName localhost
ServerRoot "$RIG/apache"
DefaultRuntimeDir "$RIG/apache"
PidFile "$RIG/apache/pid"
Mutex pthread
StartServers 1
ErrorLog "$RIG/apache.log"
LogLevel info
SetEnvIf Authorization ^[A-Za-z]+ logon=\$0
CustomLog "$RIG/access.log" "%>s %k %{logon}e %r"
ProxyPass / $upstream/
END
    cat
  } >"$RIG/apache.conf"
  serve apache "$port" apache2 -D FOREGROUND -f "$RIG/apache.conf"
}
