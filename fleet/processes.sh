# Sourced by the scripts that prove something with a real engine: a folder and processes that end with
# the script, whatever ends it.
#
#   $work                              the folder
#   start NAME COMMAND...              runs it beside the script; what it prints goes to $work/NAME.log
#   stop NAME                          ends it, and waits until it has ended
#   wait_until SECONDS WHAT COMMAND... tries until the command succeeds; fails when the time is over or
#                                      a process has ended, with the ends of the logs
#   listening NAME                     prints the port that a Prometheus program says it listens on
#   have PROGRAM...                    fails where one is missing

export no_proxy='*' NO_PROXY='*'
work=$(mktemp -d "${TMPDIR:-/tmp}/kraid-fleet.XXXXXX")
declare -A process=()
trap 'clean_up $?' EXIT
trap 'exit 130' INT TERM HUP

clean_up() {
  trap - EXIT INT TERM HUP
  local name
  for name in "${!process[@]}"; do stop "$name"; done
  rm -rf "$work"
  exit "$1"
}

# `timeout` leads a process group of its own, passes signals on, and ends what outlives this script.
start() {
  local name=$1
  shift
  : >"$work/$name.log"
  timeout -k 5 300 "$@" >"$work/$name.log" 2>&1 </dev/null &
  process[$name]=$!
}

stop() {
  local pid=${process[$1]}
  unset "process[$1]"
  kill "$pid" 2>/dev/null || true
  wait "$pid" 2>/dev/null || true
  kill -KILL -- "-$pid" 2>/dev/null || true
}

fail() {
  echo "${0##*/}: $*" >&2
  exit 1
}

show_logs() {
  local log
  for log in "$work"/*.log; do
    [ ! -s "$log" ] || { echo "--- the end of ${log##*/}:" && tail -n 12 "$log"; } >&2
  done
}

wait_until() {
  local limit=$((SECONDS + $1)) what=$2
  shift 2
  until "$@"; do
    local name
    for name in "${!process[@]}"; do
      kill -0 "${process[$name]}" 2>/dev/null ||
        { show_logs && fail "$name has ended, while waiting until $what"; }
    done
    [ "$SECONDS" -lt "$limit" ] || { show_logs && fail "gave up waiting until $what"; }
    sleep 0.2
  done
}

listening() {
  local port
  port=$(sed -nE '/.*msg="Listening on" address=.*:([0-9]+)$/{s//\1/p;q}' "$work/$1.log")
  [ -n "$port" ] && echo "$port"
}

have() {
  local program
  for program in "$@"; do
    command -v "$program" >/dev/null || fail "$program is not installed: scripts/setup.sh, purpose 'fleet'"
  done
}
