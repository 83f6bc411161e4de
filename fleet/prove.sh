#!/bin/bash
# prove.sh [BUILD_DIR]: that the metrics are what a real Prometheus takes them for. A real node_exporter
# serves the file that kraid-inventory writes of the sample machine, a real Prometheus scrapes it and
# evaluates the rules of this folder, and the answers to fleet/proof/questions.txt are compared with the
# JSON document of the same machine. Then: the same text scraped without node_exporter gives the same
# series, alerts fire as expected, and a collection that fails leaves no old series behind.
#
# Runs for less than a minute, as anybody; everything is in a temporary folder, and the ports are free
# ones of the loopback interface. Needs what scripts/setup.sh installs for the purpose `fleet`. KRAID_RULES
# is another folder with rules to prove, such as changed ones.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
program=$(cd "${1:-$top/build/release}" && pwd)/bin/kraid-inventory
rules=${KRAID_RULES:-$top/fleet}
. "$top/fleet/processes.sh"
. "$top/fleet/proof/ask.sh"
have prometheus promtool prometheus-node-exporter curl jq /usr/bin/python3 "$program"

same() {  # same WHAT EXPECTED_FILE FOUND_FILE
  diff "$2" "$3" >"$work/difference" && [ -s "$2" ] && return
  head -n 40 "$work/difference" >&2
  fail "$1 (<: expected, >: found)"
}
passed() { printf '%-24s %s\n' "$1" "$2"; }

# The file, as the timer writes it, and the document that it is held against.
mkdir -p "$work/textfile"
file=$work/textfile/kraid.prom
"$program" --replay "$top/demo" --format openmetrics --output "$file"
"$program" --replay "$top/demo" --format json --no-instances --runs all --output "$work/sample.json"

# Parsers and a critic of others.
promtool check metrics <"$file" >"$work/lint" 2>&1 || fail "promtool check metrics: $(cat "$work/lint")"
[ ! -s "$work/lint" ] || fail "promtool check metrics: $(cat "$work/lint")"
passed "promtool check metrics" "nothing to complain of"
/usr/bin/python3 "$top/fleet/proof/parse_both.py" "$file" | series >"$work/file.series" ||
  fail "the reference parsers do not agree"
passed "reference parsers" "OpenMetrics and the older text: the same $(wc -l <"$work/file.series") samples"

# The servers. Each takes a free port and says which.
start node_exporter prometheus-node-exporter --web.listen-address=127.0.0.1:0 \
  --collector.disable-defaults --collector.textfile --collector.textfile.directory="$work/textfile"
start openmetrics /usr/bin/python3 "$top/fleet/proof/serve_openmetrics.py" "$file"
wait_until 20 "node_exporter listens" listening node_exporter >"$work/node_exporter.port"
wait_until 20 "the text is served" listening openmetrics >"$work/openmetrics.port"

# The rules, with less patience, and everything each second.
mkdir -p "$work/rules"
for rule_file in "$rules"/kraid-*.yml; do
  sed -E 's/^( +)for: .*/\1for: 2s/; /^ +keep_firing_for:/d; s/^( +)interval: .*/\1interval: 1s/' \
    "$rule_file" >"$work/rules/${rule_file##*/}"
done
configure() {  # configure NAME PORT_FILE RULES
  cat >"$work/$1.yml" <<YML
global: {scrape_interval: 1s, scrape_timeout: 1s, evaluation_interval: 1s}
rule_files: [$3]
scrape_configs:
  - job_name: node
    static_configs: [{targets: ["127.0.0.1:$(cat "$2")"], labels: {instance: harbor1}}]
YML
  promtool check config "$work/$1.yml" >"$work/$1.check" 2>&1 || fail "$(cat "$work/$1.check")"
  start "$1" prometheus --config.file="$work/$1.yml" --storage.tsdb.path="$work/$1.data" \
    --web.listen-address=127.0.0.1:0
}
configure prometheus "$work/node_exporter.port" "'$work/rules/*.yml'"
configure direct "$work/openmetrics.port" ""
wait_until 30 "Prometheus listens" listening prometheus >"$work/prometheus.port"
wait_until 30 "the second Prometheus listens" listening direct >"$work/direct.port"
port=$(cat "$work/prometheus.port")
asked() { [ -n "$(query "$@" 2>/dev/null)" ]; }
wait_until 30 "the file was scraped" asked "$port" 'kraid_build_info and on (instance) up == 1'
wait_until 30 "the text was scraped" asked "$(cat "$work/direct.port")" 'kraid_build_info and on (instance) up == 1'
wait_until 30 "the rules were evaluated" asked "$port" 'fleet:kraid_machines_complete:ratio'

query "$port" node_textfile_scrape_error | series >"$work/found"
echo " => 0" >"$work/expected"
same "node_textfile_scrape_error" "$work/expected" "$work/found"
all='{__name__=~"kraid_.*"}'
named() { jq -c '. + {what: .__name__}' | series; }
query "$port" "$all" | named >"$work/by_node_exporter"
same "the series that came by node_exporter" "$work/file.series" "$work/by_node_exporter"
query "$(cat "$work/direct.port")" "$all" | named >"$work/by_openmetrics"
same "the series that came as OpenMetrics" "$work/file.series" "$work/by_openmetrics"
passed "scrapes" "by node_exporter and as OpenMetrics: the same series, no scrape error"
stop direct
stop openmetrics

# The questions.
questions=0
ask() {
  questions=$((questions + 1))
  query "$port" "$promql" | series >"$work/found" || fail "$promql"
  jq -c "$jq_terms $filter" "$work/sample.json" | series >"$work/expected" || fail "$filter"
  same "$promql" "$work/expected" "$work/found"
}
filter=""
while IFS= read -r line; do
  if [[ $line == " "* ]]; then
    filter="$filter $line"
    continue
  fi
  [ -z "$filter" ] || ask
  filter=""
  case $line in
    "? "*) promql=${line#? } ;;
    "= "*) filter=${line#= } ;;
  esac
done < <(cat "$top/fleet/proof/questions.txt"; echo)
passed "questions" "$questions answered as the JSON document has it"

# The alerts.
firing() {
  curl -sS "http://127.0.0.1:$port/api/v1/alerts" | jq -r '.data.alerts[] | select(.state == "firing").labels |
    [.severity, .alertname, .instance, .controller, .logical_drive // .device] | map(. // "-") | join(" ")' |
    LC_ALL=C sort >"$work/alerts"
}
fire() { firing && cmp -s "$work/alerts" "$work/expected_alerts"; }
grep -v '^#' "$top/fleet/proof/expected_alerts.txt" | LC_ALL=C sort >"$work/expected_alerts"
(wait_until 30 "the expected alerts fire" fire) 2>/dev/null || same "the alerts that fire" "$work/expected_alerts" "$work/alerts"
passed "alerts" "$(wc -l <"$work/alerts") fire, each expected"

# A collection that fails, as a recording that is too old, replaces the file: no part is left.
! "$program" --replay "$top/demo" --max-age 60 --format openmetrics --output "$file" 2>/dev/null ||
  fail "a recording of 2005 is not too old"
wait_until 20 "a failed collection says so" asked "$port" 'kraid_collection_complete == 0'
echo '{"what": "kraid_collection_complete", "value": 0}
  {"what": "kraid_collection_problems", "kind": "collection_failed", "value": 1}' | series >"$work/expected"
query "$port" '{__name__=~"kraid_(collection_complete|collection_problems)"} == 0 unless kraid_collection_problems == 0
  or kraid_collection_problems == 1' | named >"$work/found"
same "what a failed collection says" "$work/expected" "$work/found"
query "$port" '{__name__=~"kraid_(controller|logical_drive|device)_.*"}' >"$work/found"
[ ! -s "$work/found" ] || fail "old series are left after a failed collection: $(head -n 3 "$work/found")"
passed "a failed collection" "says so, and no old series is left"
