#!/bin/sh
# check-questions.sh [TEMPLATE...]: asks all questions of questions.md, and what all alerts look at, of
# a simulated fleet. Its machines are made from the templates, by default from what the command of
# build/release writes of the sample machine. A Prometheus on a free port of the loopback interface
# answers, from a folder that is removed again. Takes a quarter of a minute.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh
need fleet
. fleet/servers.sh

if [ $# -eq 0 ]; then
  command=build/release/bin/kraid-inventory
  [ -x "$command" ] || {
    echo "check-questions: there is no $command: build it, or name a template" >&2
    exit 1
  }
  "$command" --replay demo --format openmetrics >"$work/template"
  set -- "$work/template"
fi

serve_fleet() {
  start prometheus --config.file="$work/prometheus.yml" --storage.tsdb.path="$work/data" \
    --storage.tsdb.retention.time=100y
}

# The rules are evaluated at some time within their interval, so the questions are asked a little
# later than that, and before the last samples are five minutes old.
end=1700000000
fleet/simulated_fleet.py --end $end "$@" >"$work/fleet.txt"
logged promtool tsdb create-blocks-from openmetrics "$work/fleet.txt" "$work/data"
echo 'global: {}' >"$work/prometheus.yml"
serve_fleet
logged promtool tsdb create-blocks-from rules --url="$url" --start=$end --end=$((end + 240)) \
  --output-dir="$work/data" fleet/kraid-recording.yml
stop
serve_fleet
python3 fleet/check_questions.py "$url" $((end + 270))
