#!/bin/sh
# make-seeds.sh SOURCE_DIR SEEDS_DIR: an input of each fuzzer for each text of demo/ and
# tests/machines/ that it can read, in SEEDS_DIR/FUZZER/. What was there before is gone.
set -eu
source=$1
seeds=$2
rm -rf "$seeds"
for fuzzer in kelvcmd_config hrconf_config arcconf_config kelvcmd_outputs manager_log machine \
    recording document options; do
  mkdir -p "$seeds/$fuzzer"
done

add() {  # add SEED NAME FILE: one section more
  if [ -e "$seeds/$1" ]; then echo >>"$seeds/$1"; fi
  { echo "@0 $2" && cat "$3"; } >>"$seeds/$1"
}

for machine in "$source/demo" "$source"/tests/machines/*/; do
  name=$(basename "$machine")
  log=$machine/KelvMgr/KelvEvtA.log
  if [ -e "$log" ]; then
    cp "$log" "$seeds/manager_log/$name"
    add "machine/$name" /usr/KelvMgr/KelvMgr.sh /dev/null
    add "machine/$name" /usr/KelvMgr/KelvEvtA.log "$log"
  fi
  for text in "$machine"/kraid/*.d/*/*-*.txt; do
    [ -e "$text" ] || continue
    folder=$(dirname "$text")
    number=$(basename "$folder")
    tool=$(basename "$(dirname "$folder")" .d)
    command=$(basename "$text" .txt)
    word=${command%-*}
    option=${command#*-}
    if [ "$word" = getconfig ]; then
      cp "$text" "$seeds/${tool}_config/$name-$number"
    elif [ "$tool" = kelvcmd ]; then
      add "kelvcmd_outputs/$name-$number" "$word $option" "$text"
    fi
    # The whole machine, and each controller for itself: what is short is tried more often.
    for seed in "$name" "$name-$tool-$number"; do
      add "machine/$seed" "./kraid/$tool $word $number $option" "$text"
    done
  done
  if [ -e "$machine/expected/inventory.json" ]; then
    cp "$machine/expected/inventory.json" "$seeds/document/$name"
  fi
  if [ -e "$machine/recording.json" ]; then
    (cd "$machine" && find recording.json kraid/*.d KelvMgr -type f) | while read -r file; do
      add "recording/$name" "$file" "$machine/$file"
    done
  fi
done

# The command lines of the documents, one word on a line.
grep -rhoE '^ *(\$ )?kraid-inventory( [^ #|;>]+)*' "$source/README.md" "$source/docs" |
  sort -u | sed 's/^.*kraid-inventory *//' | {
  count=0
  while read -r line; do
    count=$((count + 1))
    echo "$line" | tr ' ' '\n' >"$seeds/options/$count"
  done
}
