#!/bin/bash
# simulate.sh [BUILD_DIR]: what 1,000 machines with 50 drives each cost a Prometheus. They are made by
# simulated_fleet.py from the sample machine, some with faults. A server has a path for each, a real
# Prometheus scrapes them, and what it answers is held against what the server has counted itself. A
# second one gets a day of four machines, a sample a minute, by promtool: bytes a sample, and what
# looking back costs. The figures are explained in docs/fleet.md.
#
# Runs for three to four minutes, as anybody; everything is in a temporary folder (2 GB), and the ports are free
# ones of the loopback interface. Needs 4 GB of memory and what scripts/setup.sh installs for `fleet`.
# KRAID_RULES is another folder with rules, questions and simulated_fleet.py.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
program=$(cd "${1:-$top/build/release}" && pwd)/bin/kraid-inventory
rules=${KRAID_RULES:-$top/fleet}
machines=${KRAID_MACHINES:-1000}
. "$top/fleet/processes.sh"
. "$top/fleet/proof/ask.sh"
python=/usr/bin/python3
have prometheus promtool curl jq $python "$program"

now=$(date +%s)
"$program" --replay "$top/demo" --format openmetrics --output "$work/sample"
make() { "$rules/simulated_fleet.py" --drives 50 --every 100 --end "$now" "$@" "$work/sample"; }
half=$((machines / 2))
echo "$(grep -m 1 'model name' /proc/cpuinfo | cut -d: -f2 | xargs), $(nproc) cores, $(prometheus --version 2>&1 | head -n 1 | cut -d' ' -f1-3)"

# The fleet as it is now, and the day before, which the server passes over.
make --machines "$half" --duration 24h --step 24h >"$work/first" &
first=$!
make --machines $((machines - half)) --first "$half" --duration 24h --step 24h >"$work/second"
wait "$first"
cat "$work/first" "$work/second" >"$work/fleet" && rm "$work/first" "$work/second"
start server $python "$top/fleet/proof/serve_fleet.py" "$work/fleet" "$work/targets.json" "$work/totals"
wait_until 120 "the fleet is served" listening server >"$work/port"

configure() {  # configure RULE_FILES
  cat >"$work/prometheus.yml" <<YML
global: {scrape_interval: 15s, scrape_timeout: 15s, evaluation_interval: 30s}
rule_files: [$1]
scrape_configs:
  - {job_name: node, file_sd_configs: [{files: ["$work/targets.json"]}]}
YML
}
configure ""
start prometheus prometheus --config.file="$work/prometheus.yml" --storage.tsdb.path="$work/data" \
  --web.listen-address=127.0.0.1:0 --web.enable-lifecycle
wait_until 30 "Prometheus listens" listening prometheus >"$work/port"
port=$(cat "$work/port")
scraped() { [ "$(query "$port" 'count(count_over_time(up[5m]) > 1)' 2>/dev/null | jq .value)" = "$machines" ]; }
wait_until 120 "each machine was scraped twice" scraped
$python "$top/fleet/proof/measure_fleet.py" fleet "$port" "$work/totals"

# The recorded series are there for the questions, but are not evaluated meanwhile. For as long the
# second Prometheus gets its day.
sed 's/^    interval: .*/    interval: 30s/' "$rules/kraid-recording.yml" >"$work/recording.yml"
configure "'$work/recording.yml'"
curl -sS -X POST "http://127.0.0.1:$port/-/reload"
make --machines 4 --first 98 --duration 25h --step 1m >"$work/day"
promtool tsdb create-blocks-from openmetrics --max-block-duration=36h "$work/day" "$work/day.data" >"$work/blocks"
rm "$work/day"
awk 'NR > 1 {samples += $(NF - 3); series = $(NF - 1); bytes += $NF}
  END {printf "%-38s %9.2f of %d samples in blocks, %d series\n", "bytes a sample", bytes / samples, samples, series}' "$work/blocks"
recorded() {
  curl -sS "http://127.0.0.1:$port/api/v1/rules" |
    jq -e 'all(.data.groups[].rules[]; .lastEvaluation > "0001-01-02")' >/dev/null
}
wait_until 100 "each recording rule was evaluated" recorded
configure ""
curl -sS -X POST "http://127.0.0.1:$port/-/reload"
printf '\n%s machines, now\n' "$machines"
$python "$top/fleet/proof/measure_fleet.py" queries "$port" "$rules" 1
printf '\n%-38s %6.0f MB, with what the queries took\n' "memory, resident" \
  "$(curl -sS "http://127.0.0.1:$port/metrics" | awk '/^process_resident_memory_bytes/ {print $2 / 1e6}')"
stop prometheus

sed -i 's/^rule_files.*//; /scrape_configs/,$d' "$work/prometheus.yml"
start day prometheus --config.file="$work/prometheus.yml" --storage.tsdb.path="$work/day.data" \
  --storage.tsdb.retention.time=100y --web.listen-address=127.0.0.1:0
wait_until 30 "the second Prometheus is ready" listening day >"$work/port"
sleep 2
printf '\n4 machines with a day behind them\n'
$python "$top/fleet/proof/measure_fleet.py" queries "$(cat "$work/port")" "$rules" 10 "$now"
