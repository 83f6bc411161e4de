#!/bin/bash
# recordings_test.sh BUILD_DIR SOURCE_DIR: what was recorded is shown again as it was, byte for byte;
# pseudonyms hide what they are to hide, and nothing else; and a bad recording is refused.
set -u
command=$1/bin/kraid-inventory
source=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
failures=0
export LC_ALL=C

fail() {
  echo "FAILED: $*"
  failures=$((failures + 1))
}
replay() {  # in another place, with nothing in the environment, and no tool to be found
  (cd / && env -i "$command" --replay "$@")
}

# Each machine of the tests, behind the sample's tools; the formats and modes take turns.
modes=("--format json --runs all" "--check" "" "--format mof" "--format json --as-host"
  "--format json --passes 2" "--verbose" "--format openmetrics")
turn=0
for machine in "$source"/demo "$source"/tests/machines/*/; do
  [ -d "$machine/kraid" ] || continue
  for mode in "${modes[$turn]}" "--format json --runs all"; do
    rm -rf root && mkdir -p root/kraid
    cp "$source"/demo/kraid/{kelvcmd,hrconf,arcconf,answer.sh} root/kraid
    cp -r "$machine"/kraid/*.d root/kraid
    "$command" --trust-tools --root root --record recorded $mode >live 2>live.err
    status=$?
    rm -rf root
    shown=${mode/--as-host/}
    replay "$folder/recorded" ${shown/--passes 2/} >replayed 2>replayed.err
    [ $? -eq $status ] || fail "$machine $mode: exit status"
    cmp live replayed || fail "$machine $mode"
    cmp live.err replayed.err || fail "$machine $mode: standard error"
  done
  turn=$(((turn + 1) % ${#modes[@]}))
done

# The sample machine's recording is what its tools say, and a copy of it is the same in all formats.
# (The manager's log comes last, and is not there for everybody.)
[[ $(replay "$source/demo" KVXSG_krRawData) == "$("$command" --trust-tools --root "$source/demo" KVXSG_krRawData)"* ]] ||
  fail "demo/recording.json is out of date"
replay "$source/demo" --record "$folder/copy" >text
for mode in "" --check "--format json --runs all" "--format mof" "KVXSG_LogRecord_RAIDMgrEvent"; do
  cmp <(replay "$source/demo" $mode) <(replay "$folder/copy" $mode) || fail "copy $mode"
done
grep -q "^RAID manager, 18 entries" text || fail "the manager's log of the sample machine"

# Of a log that was too large its newest end was kept, and the replay says so each time.
cp -r "$source/demo" cut && sed -i 's,"KelvMgr/KelvEvtA.log",&\, "file_bytes": 70000000,' cut/recording.json
replay "$folder/cut" --format json --record "$folder/cut.again" >live
grep -q '"only its newest 1 MiB of 67 MiB were read"' live || fail "a log that is not whole"
cmp live <(replay "$folder/cut.again" --format json) || fail "a log that is not whole, again"

# Pseudonyms: the same shape everywhere, no secret anywhere, the same for the same key.
echo "a key that nobody else is to know" >key
"$command" --replay "$source/demo" --sanitize-key key --record "$folder/hidden" --format json >hidden.json
alike() { sed 's/[a-z]/a/g; s/[A-Z]/A/g; s/[0-9]/0/g'; }
for mode in "" --check "--format mof" "KVXSG_krRawData"; do
  replay "$folder/hidden" $mode >hidden.out
  cmp <(replay "$source/demo" $mode | sed 's,/opt/kelvaraid,/,' | alike) <(alike <hidden.out) || fail "shape of $mode"
  cat hidden.out >>hidden.all
done
secrets=$(cd "$source/demo" && {
  grep -rhE "(Serial number|World-wide name|name) +: " kraid | sed 's/.*: //'
  grep -rhE "Device ID.*: .{20}[A-Z0-9]{7}$" kraid | sed 's/.*\(.......\)$/\1/'
  cut -f3 KelvMgr/KelvEvtA.log
} | sort -u)
[ "$(echo "$secrets" | wc -l)" -gt 50 ] || fail "secrets of the sample machine"
for secret in $secrets; do
  case $secret in boot | data | system | Okay) continue ;; esac  # words of the tools, too
  grep -rlw -e "$secret" hidden hidden.json hidden.all && fail "$secret is not hidden"
done
cmp hidden.json <(replay "$folder/hidden" --format json) || fail "sanitized and replayed"
cmp hidden.json <("$command" --replay "$source/demo" --sanitize-key key --format json) || fail "the same key"
"$command" --replay "$source/demo" --sanitize --format json | cmp -s hidden.json - && fail "two random keys"

# Recordings that are not to be trusted.
mkfifo pipe
rows=$(grep -v "^#" "$source/tests/bad_recordings.txt") || fail "no bad recordings"
while IFS='|' read -r change message; do
  rm -rf bad && cp -r "$source/demo" bad && (cd bad && eval "$change")
  output=$(timeout 20 "$command" --replay bad --check 2>&1 >line)
  [ $? -eq 3 ] && grep -q '^KRAID UNKNOWN - ' line || fail "$change: no UNKNOWN"
  case $output in *"$message"*) ;; *) fail "$change: $output" ;; esac
done <<<"$rows"

# Places that no recording may take, and ages.
mkdir full && touch full/file && ln -s absent nowhere && ln -s copy link
cp -r "$source/demo" demo
cp -r copy before && cp -r copy future
sed -i 's/"collected_at": .*/"collected_at": "2999-01-01T00:00:00Z",/' future/recording.json
while IFS='|' read -r status arguments message; do
  output=$("$command" $arguments 2>&1 >/dev/null)
  [ $? -eq "$status" ] || fail "$arguments: exit status"
  case $output in *"$message"*) ;; *) fail "$arguments: $output" ;; esac
done <<END
3|--record full|there is something else than a recording in it
3|--record full/file|it is no folder
3|--record demo|it holds
3|--record new --plugin key|nothing was collected
3|--record nowhere|it is a link to nothing
3|--record copy --output link/kraid/file|--record replaces the folder that
3|--record new --log new|--record replaces the folder that
2|--record new --passes 101|100 passes at most
3|--record absent/there|No such file or directory
1|--replay copy --max-age 60|was recorded at 2005-03-15T04:00:05-05:00,
0|--replay recorded --max-age 600|
1|--replay future --max-age 600| s from now
2|--max-age 60|--max-age is of what --replay shows
2|--replay copy --as-host|--as-host does not go with --replay
2|--record new KVXSG_krRawData|it keeps all
2|--sanitize-key pipe|regular file
2|--sanitize-key full/file|has not 16 bytes
END
if [ "$(id -u)" -eq 0 ]; then
  mkdir -m 1777 all && ln -s ../before all/planted && chown -h 65534 all/planted
  output=$("$command" --record all/planted 2>&1 >/dev/null)
  case $output in *"the link planted is somebody else's"*) ;; *) fail "a planted link: $output" ;; esac
fi
# What was hidden had not been seen before: also where a tool hangs, and is not asked any more.
mkdir -p hangs/kraid && printf '#!/bin/sh\necho secret17 >&2; sleep 9\n' >hangs/kraid/kelvcmd && chmod +x hangs/kraid/kelvcmd
"$command" --trust-tools --root hangs --tool-timeout 0.1 --sanitize --record hung --verbose --log log >text 2>&1
[ $? -eq 0 ] && grep -q "was stopped after 100 ms" text || fail "a tool that hangs, sanitized"
"$command" --replay hung --log again >/dev/null && cmp log again || fail "the log of what was sanitized"
"$command" --trust-tools --root hangs --tool-timeout 0.1 --record hung --check >live
cmp live <("$command" --replay hung --check) || fail "a tool that hangs"

# A tool that prints something else each time.
mkdir -p grows/kraid && printf '#!/bin/sh\necho x >>count; cat count\n' >grows/kraid/kelvcmd && chmod +x grows/kraid/kelvcmd
"$command" --trust-tools --root grows --as-host --format json --runs all --record grown >live
cmp live <("$command" --replay grown --format json --runs all) || fail "a tool that prints something else each time"

# A signal leaves the recording from before, and nothing beside it.
mkdir -p root/kraid && printf '#!/bin/sh\necho >running\nsleep 60\n' >root/kraid/kelvcmd && chmod +x root/kraid/kelvcmd
"$command" --trust-tools --root root --record copy >/dev/null &
while [ ! -e root/running ] && kill -0 $!; do sleep 0.05; done
kill -TERM $! && wait $! 2>/dev/null
diff -r copy before || fail "the recording from before a signal"
find . -maxdepth 1 -name '.*.??????' | grep . && fail "an unfinished recording"

# What somebody else puts there during the collection keeps its place, and gives nothing its rights.
if [ "$(id -u)" -eq 0 ]; then
  mkdir -m 1777 meanwhile
  for result in record output; do
    printf '#!/bin/sh\n[ -e %s ] || install -d -m 777 -o 65534 %s\nexit 1\n' "$folder/meanwhile/$result" "$folder/meanwhile/$result" \
      >root/kraid/kelvcmd
    "$command" --trust-tools --root root --$result meanwhile/$result >/dev/null 2>line
    [ $? -eq 3 ] && grep -q "somebody else has put something there meanwhile" line || fail "planted meanwhile: $result"
    [ "$(stat -c %u meanwhile/$result)" -eq 65534 ] || fail "replaced: $result"
  done
fi

[ "$failures" -eq 0 ]
