#!/bin/bash
# units_test.sh BUILD_DIR SOURCE_DIR: the service's command line, what becomes of the metrics however
# a collection ends, and what systemd says of the units.
set -u
folder=$(mktemp -d)
folder=$(cd -P "$folder" && pwd)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
# A unit's command has no blank in its path; the build's folder may.
ln -s "$1" build && ln -s "$2" source
units=$folder/build/packaging/systemd
source=$folder/source
command=$folder/build/bin/kraid-inventory
failures=0

expect() {  # expect WHAT EXPECTED ACTUAL
  diff <(echo "$2") <(echo "$3") && return
  echo "FAILED: $1 (<: expected, >: found)"
  failures=$((failures + 1))
}
setting() { sed -n "s/^$1=//p" "$units/kraid-inventory.service"; }
publish() { RUNTIME_DIRECTORY=$folder/run KRAID_METRICS_FOLDER=$folder/metrics "$@" \
  "$units/publish-metrics" 2>messages; }

# The service's own command line, in which systemd puts in places and settings.
mkdir state run metrics
line=$(sed -n '/^ExecStart=/,/[^\\]$/p' "$units/kraid-inventory.service" | tr -d '\\\n' | sed \
  "s,^[^ ]*,$command,; s,%S/kraid-inventory,state,; s,%t/kraid-inventory,run,")
KRAID_ROOT=$source/demo KRAID_TIMEOUT=$(setting Environment=KRAID_TIMEOUT) KRAID_OPTIONS=--trust-tools
(umask "$(setting UMask)" && eval "$line") || expect "exit status" 0 $?
expect "metrics" "kraid_collection_complete 1
kraid_controllers 4" "$(grep -E '^kraid_(collection_complete|controllers) ' run/kraid.prom)"
expect "what others may not read" "" "$(find state/last run/kraid.prom ! -perm -444)"
check=$("$command" --check --replay state/last --max-age 1800)
expect "the check of the recording" "2 KRAID CRITICAL" "$? ${check%% -*}"

# {SERVICE_RESULT EXIT_CODE EXIT_STATUS|the document that the command left|what is published}
while IFS='|' read -r ending document published; do
  read -r SERVICE_RESULT EXIT_CODE EXIT_STATUS <<<"$ending"
  export SERVICE_RESULT EXIT_CODE EXIT_STATUS
  rm -f run/kraid.prom
  [ "$document" = none ] || printf "$document" >run/kraid.prom
  echo old 1 >metrics/kraid.prom
  (umask 077 && publish env)
  status=$?
  why=$(sed -n 's/.*collection_failed".*why="the command left no metrics: \(.*\)"} 1/\1/p' metrics/kraid.prom)
  expect "status and mode after: $ending" "0 644" "$status $(stat -c %a metrics/kraid.prom)"
  expect "published after: $ending, $document" "$published" "${why:-$(cat metrics/kraid.prom)}"
done <<'END'
success exited 0|new 1\n|new 1
exit-code exited 1|new 1\n|new 1
exit-code exited 3|new 1\n|new 1
exit-code exited 2|none|exit-code, exited 2
exit-code exited 203|none|exit-code, exited 203
success exited 0||success, exited 0
signal killed KILL|new 1\n|signal, killed KILL
core-dump dumped SEGV|new 1\n|core-dump, dumped SEGV
timeout killed TERM|new 1\n|timeout, killed TERM
END
# What both say about a failure they say in the same words.
"$command" --replay "$source/demo" --max-age 1 --format openmetrics 2>/dev/null >failure
expect "lines that the command would not write, the last line" "# EOF" "$(sed '/^kraid.*\(start_time\|problem_info\)/d' \
  metrics/kraid.prom | grep -vxFf failure; tail -n 1 metrics/kraid.prom)"

setting=""
# {what is done beforehand|exit status, lines of messages|what is then in metrics/kraid.prom}
export SERVICE_RESULT=success EXIT_CODE=exited EXIT_STATUS=0
while IFS='|' read -r prepare status found; do
  rm -rf metrics run/kraid.prom
  mkdir metrics
  mkdir -p elsewhere
  echo new 1 >run/kraid.prom
  echo theirs >elsewhere/victim
  eval "$prepare"
  publish env $setting
  expect "exit status and messages after: $prepare" "$status" "$? $(wc -l <messages)"
  expect "metrics after: $prepare" "$found" "$(cat metrics/kraid.prom 2>/dev/null)"
  expect "links and others' files after: $prepare" "elsewhere/victim:theirs" \
    "$(find metrics/ -type l 2>/dev/null; grep -r . elsewhere)"
  rm -rf elsewhere
  setting=""
done <<'END'
rmdir metrics|0 1|
ln -s ../elsewhere metrics/kraid.prom|0 0|new 1
ln -s ../elsewhere/victim metrics/kraid.prom|0 0|new 1
ln -s ../elsewhere/victim metrics/.kraid.prom.new|0 0|new 1
ln elsewhere/victim metrics/kraid.prom|0 0|new 1
rmdir metrics; ln -s elsewhere metrics|1 1|
echo old >metrics/kraid.prom; mkdir metrics/.kraid.prom.new|1 3|
echo old >metrics/kraid.prom; setting=KRAID_METRICS_FOLDER=|0 0|old
setting=KRAID_METRICS_FOLDER=$folder/metrics/|0 0|new 1
END

# The settings' file tells what holds without it.
expect "settings" "$(setting Environment)" "$(sed -n 's/^#\(KRAID_.*=.\)/\1/p' \
  "$source/packaging/systemd/kraid-inventory.default")"
if ! command -v systemd-analyze >/dev/null; then
  [ "$failures" -eq 0 ] || exit 1
  echo "SKIPPED: systemd-analyze is not here to look at the units"
  exit 77
fi
cp "$units/kraid-inventory.timer" .
sed "s,=[^ ]*/bin/kraid-inventory,=$command,; s,=+[^ ]*/publish,=+$units/publish," \
  "$units/kraid-inventory.service" >kraid-inventory.service
# Not the manual page, which is not installed here.
expect "systemd-analyze verify" "0" "$(systemd-analyze verify --man=no "$folder"/kraid-inventory.* 2>&1
  echo $?)"
# What is left is root, raw input and output and devices, the programs of 32 bits, /proc: what the tools
# need, as the unit says. Nearly each limit that goes counts 1 to 4 more.
expect "systemd-analyze security" "0" "$(systemd-analyze security --no-pager --offline=yes \
  --threshold=24 "$folder/kraid-inventory.service" >security; echo $?)"
# The command has its own limit first, and the time to end the last tool and to write.
expect "TimeoutStartSec is long enough" yes "$(timeout=$(systemd-analyze timespan \
  "$(setting TimeoutStartSec)" | sed -n 's/^ *μs: //p')
  [ "$timeout" -ge $((2 * KRAID_TIMEOUT * 1000000)) ] && echo yes)"

[ "$failures" -eq 0 ]
