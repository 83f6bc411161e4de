#!/bin/bash
# check-questions.sh [TEMPLATE...]: asks all questions of questions.md, and what all alerts look at, of
# a simulated fleet. Its machines are made from the templates, by default from what the command of
# build/release writes of the sample machine. A Prometheus on a free port of the loopback interface
# answers, from a folder that is removed again. Takes a quarter of a minute.
set -euo pipefail
cd "$(dirname "$0")/.."
. fleet/processes.sh
have prometheus promtool curl

if [ $# -eq 0 ]; then
  command=build/release/bin/kraid-inventory
  [ -x "$command" ] || fail "there is no $command: build it, or name a template"
  "$command" --replay demo --format openmetrics >"$work/template"
  set -- "$work/template"
fi

serve_fleet() {
  start prometheus prometheus --config.file="$work/prometheus.yml" --storage.tsdb.path="$work/data" \
    --storage.tsdb.retention.time=100y --web.listen-address=127.0.0.1:0
  wait_until 30 "Prometheus listens" listening prometheus >"$work/port"
  url=http://127.0.0.1:$(cat "$work/port")
  wait_until 30 "Prometheus is ready" curl -fs -o "$work/ready" "$url/-/ready"
}
promtool_quietly() { promtool "$@" >"$work/promtool.log" 2>&1 || { show_logs && fail "promtool $1 $2"; }; }

# The rules are evaluated at some time within their interval, so the questions are asked a little
# later than that, and before the last samples are five minutes old.
end=1700000000
fleet/simulated_fleet.py --end $end "$@" >"$work/fleet.txt"
promtool_quietly tsdb create-blocks-from openmetrics "$work/fleet.txt" "$work/data"
echo 'global: {}' >"$work/prometheus.yml"
serve_fleet
promtool_quietly tsdb create-blocks-from rules --url="$url" --start=$end --end=$((end + 240)) \
  --output-dir="$work/data" fleet/kraid-recording.yml
stop prometheus
serve_fleet
/usr/bin/python3 fleet/check_questions.py "$url" $((end + 270))
