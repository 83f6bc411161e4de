#!/bin/bash
# check-inhibitions.sh: gives the alerts of tests/inhibitions.txt to an Alertmanager with
# alertmanager.yml, on a free port of the loopback interface, and compares which of them it shows.
set -euo pipefail
cd "$(dirname "$0")/.."
. fleet/processes.sh
have prometheus-alertmanager amtool curl jq

start alertmanager prometheus-alertmanager --config.file=fleet/alertmanager.yml \
  --storage.path="$work/data" --cluster.listen-address= --web.listen-address=127.0.0.1:0
wait_until 30 "Alertmanager listens" listening alertmanager >"$work/port"
url=http://127.0.0.1:$(cat "$work/port")
wait_until 30 "Alertmanager is ready" curl -fs -o "$work/ready" "$url/-/ready"
grep -v '^#' fleet/tests/inhibitions.txt >"$work/alerts"
while read -r _ labels; do
  # shellcheck disable=SC2086  # the labels are meant to be split
  amtool --alertmanager.url="$url" alert add job=node $labels
done <"$work/alerts"

# listed OPTION...: the labels of what it then has, as in the file.
listed() {
  amtool --alertmanager.url="$url" alert query -o json "$@" | jq -r '
    .[].labels | "alertname=\(.alertname) " + (to_entries | map(select(.key != "job" and .key != "alertname")
    | "\(.key)=\(.value)") | join(" "))'
}
{
  listed --active | sed 's/^/shown /'
  listed --inhibited | sed 's/^/inhibited /'
} | sort >"$work/got"
sort "$work/alerts" | diff - "$work/got" >&2 || {
  echo "check-inhibitions: (<) is expected, (>) is what Alertmanager makes of it" >&2
  exit 1
}
echo "check-inhibitions: $(wc -l <"$work/got") alerts are shown or inhibited as expected"
