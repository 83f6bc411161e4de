#!/bin/bash
# prove-check.sh [BUILD_DIR]: starts a real Icinga 2 with the command definition that administrators get,
# has it check machines of which the states are known, and compares what the engine itself has recorded
# with fleet/proof/expected_checks.txt: states, output, and the performance data as the engine parsed it.
#
# Runs for seconds, as anybody; everything is in a temporary folder, and the one port is a free one of
# the loopback interface. Needs icinga2 and /usr/bin/python3.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
program=$(cd "${1:-$top/build/release}" && pwd)/bin/kraid-inventory
. "$top/fleet/processes.sh"
have icinga2 /usr/bin/python3 "$program"

# A machine in order is the first controller of the sample machine; one whose tool refuses has a tool that
# only says so; one has an output that cannot be read. They are recorded now: they are young enough.
mkdir -p "$work"/{healthy,unreadable,refused}.root/kraid "$work"/healthy.root/kraid/kelvcmd.d
cp "$top"/demo/kraid/{answer.sh,kelvcmd} "$work"/healthy.root/kraid
cp -r "$top"/demo/kraid/kelvcmd.d/1 "$work"/healthy.root/kraid/kelvcmd.d
cp "$top"/demo/kraid/{answer.sh,kelvcmd} "$work"/unreadable.root/kraid
cp -r "$top"/tests/machines/all_kinds/kraid/kelvcmd.d "$work"/unreadable.root/kraid
cat >"$work"/refused.root/kraid/kelvcmd <<'TOOL'
#!/bin/sh
echo "KELVCMD: only the superuser may ask the controllers."
exit 5
TOOL
chmod +x "$work"/refused.root/kraid/kelvcmd
for machine in healthy refused unreadable; do
  "$program" --trust-tools --root "$work/$machine.root" --record "$work/$machine" --brief >/dev/null 2>&1 || true
done
"$program" --replay "$top/demo" --format json --no-instances --output "$work/sample.json"

start results /usr/bin/python3 "$top/fleet/proof/recorded_checks.py" \
  "$top/fleet/proof/expected_checks.txt" "$work/port" 60 "$top" "$work"
wait_until 10 "results can be received" test -s "$work/port"

mkdir -p "$work"/icinga2/{data,cache,log,run,spool}
cp "$top"/fleet/icinga2/kraid-inventory.conf "$top"/fleet/proof/icinga2.conf "$work"/icinga2
definitions=(KraidInventory="$program" Machines="$top" Folder="$work" ResultsPort="$(cat "$work/port")"
  Configuration.RunAsUser="$(id -un)" Configuration.RunAsGroup="$(id -gn)"
  ConfigDir="$work/icinga2" DataDir="$work/icinga2/data" CacheDir="$work/icinga2/cache"
  VarsPath="$work/icinga2/cache/icinga2.vars" LogDir="$work/icinga2/log"
  InitRunDir="$work/icinga2/run" SpoolDir="$work/icinga2/spool")
start icinga2 icinga2 daemon -c "$work/icinga2/icinga2.conf" "${definitions[@]/#/-D}"

all_heard() { ! kill -0 "${process[results]}" 2>/dev/null; }
wait_until 75 "the engine has recorded each result" all_heard
wait "${process[results]}" && status=0 || status=$?
cat "$work/results.log"
[ "$status" -eq 0 ] || fail "what $(icinga2 --version | head -n 1) recorded is not what is expected"
