#!/bin/sh
# check-questions.sh [TEMPLATE...]: asks all questions of questions.md, and what all alerts look at, of
# a simulated fleet. Its machines are made from the templates, by default from what the command of
# build/release writes of the sample machine. A Prometheus on a free port of the loopback interface
# answers, from a folder that is removed again; it takes half a minute.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh
need fleet

work=$(mktemp -d)
server=""
stop() {
  [ -n "$server" ] || return 0
  kill "$server" 2>/dev/null || true
  wait "$server" 2>/dev/null || true
  server=""
}
clean_up() {
  # The status of what has failed is kept, whatever happens here.
  code=$?
  trap - EXIT
  stop
  rm -rf "$work"
  exit $code
}
trap clean_up EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# start: serves $work/data, and sets `url`. Another program may take the port meanwhile: then another
# one is tried.
start() {
  for attempt in 1 2 3; do
    port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
    url=http://127.0.0.1:$port
    prometheus --config.file="$work/prometheus.yml" --storage.tsdb.path="$work/data" \
      --storage.tsdb.retention.time=100y --web.listen-address="127.0.0.1:$port" --log.level=warn \
      2>"$work/log" &
    server=$!
    tries=0
    while [ $tries -lt 150 ] && kill -0 "$server" 2>/dev/null; do
      if curl -fs --noproxy '*' -o "$work/ready" "$url/-/ready" 2>/dev/null; then return 0; fi
      sleep 0.2
      tries=$((tries + 1))
    done
    stop
  done
  cat "$work/log" >&2
  echo "check-questions: Prometheus does not start (attempt $attempt)" >&2
  exit 1
}

# logged COMMAND...: what it prints is shown if it fails.
logged() {
  "$@" >"$work/log" 2>&1 || {
    cat "$work/log" >&2
    echo "check-questions: $* failed" >&2
    exit 1
  }
}

if [ $# -eq 0 ]; then
  command=build/release/bin/kraid-inventory
  [ -x "$command" ] || {
    echo "check-questions: there is no $command: build it, or name a template" >&2
    exit 1
  }
  "$command" --replay demo --format openmetrics >"$work/template"
  set -- "$work/template"
fi

# The rules are evaluated at some time within their interval, so the questions are asked a little
# later than that, and before the last samples are five minutes old.
end=1700000000
fleet/simulated_fleet.py --end $end "$@" >"$work/fleet.txt"
logged promtool tsdb create-blocks-from openmetrics "$work/fleet.txt" "$work/data"
echo 'global: {}' >"$work/prometheus.yml"
start
logged promtool tsdb create-blocks-from rules --url="$url" --start=$end --end=$((end + 240)) \
  --output-dir="$work/data" fleet/kraid-recording.yml
stop
start
python3 fleet/check_questions.py "$url" $((end + 270))
