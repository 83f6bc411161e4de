#!/bin/sh
# check-rules.sh: checks all that a server reads, and runs the tests of all rules. Starts no server.
set -eu
cd "$(dirname "$0")/.."
cd fleet

# What the programs print on success is kept back.
quietly() {
  if ! output=$("$@" 2>&1); then
    printf '%s\n' "$output" >&2
    echo "check-rules: $* failed" >&2
    exit 1
  fi
}

quietly promtool check rules --lint=all --lint-fatal kraid-recording.yml kraid-alerts.yml
for server in prometheus shard global; do
  quietly promtool check config --lint=all --lint-fatal $server.yml
done
quietly amtool check-config alertmanager.yml
for route in critical=on-call warning=somebody info=somebody; do
  quietly amtool config routes test --config.file=alertmanager.yml \
    --verify.receivers="${route#*=}" severity="${route%=*}"
done
for test in tests/*.yml; do quietly promtool test rules "$test"; done
./check_tests.py
