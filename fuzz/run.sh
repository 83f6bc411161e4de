#!/bin/sh
# run.sh SECONDS [FUZZER...]: builds the fuzzers with clang and runs each of them, or those named,
# for so many seconds, or until it finds something. One line for each: how long it ran, runs in all and
# a second, edges of the program that were reached, findings. These are in
# build/fuzz/findings/FUZZER/; exit status 1 when there are any. What was learnt stays in
# build/fuzz/corpus/ for the next time.
set -eu
seconds=$1
shift
cd "$(dirname "$0")/.."
. scripts/setup.sh
need build fuzz
build fuzz
work=$PWD/build/fuzz
fuzz/make-seeds.sh "$PWD" "$work/seeds"
fuzzers=$*
[ $# -gt 0 ] || fuzzers=$(ls "$work/seeds")

# The sources whose texts its inputs are made of.
sources_of() {
  case $1 in
    document) echo inventory/print/*.cc inventory/print/machine_fields.h inventory/machine/*.cc ;;
    recording) echo inventory/runs/*.cc inventory/base/run_record.cc schema/published_texts.h ;;
    options) echo inventory/command/options.cc ;;
    manager_log) echo raidmgr/*.cc ;;
    *) echo model/*.cc model/*.h collect/*.cc collect/*.h schema/published_texts.h \
      inventory/machine/state_words.cc inventory/machine/usual_labels.cc ;;
  esac
}

status=0
for fuzzer in $fuzzers; do
  corpus=$work/corpus/$fuzzer
  findings=$work/findings/$fuzzer
  log=$work/$fuzzer.log
  mkdir -p "$corpus" "$findings"
  # shellcheck disable=SC2046  # names of sources have no blanks
  fuzz/make-dictionary.sh $(sources_of "$fuzzer") >"$work/$fuzzer.dict"
  set -- "$corpus" "$work/seeds/$fuzzer"
  [ ! -d "fuzz/corpus/$fuzzer" ] || set -- "$@" "fuzz/corpus/$fuzzer"
  start=$(date +%s)
  "$work/fuzz/${fuzzer}_fuzzer" "$@" -dict="$work/$fuzzer.dict" -max_total_time="$seconds" \
    -artifact_prefix="$findings/" -rss_limit_mb=2048 -timeout=20 -max_len=65536 >"$log" 2>&1 ||
    status=1
  found=$(find "$findings" -type f | wc -l)
  [ "$found" -eq 0 ] || status=1
  awk -v fuzzer="$fuzzer" -v found="$found" -v time="$(($(date +%s) - start))" '
    /^#[0-9]+/ { runs = substr($1, 2) }
    / cov: / { for (i = 1; i < NF; ++i) if ($i == "cov:") edges = $(i + 1) }
    END {
      printf "%-16s %5d s %9d runs %6d/s %6d edges %3d findings\n", fuzzer, time, runs,
        runs / (time > 0 ? time : 1), edges, found
    }' "$log"
done
exit $status
