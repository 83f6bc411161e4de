#!/bin/bash
# install_test.sh BUILD_DIR SOURCE_DIR: what is installed works from any place, and the help, the
# manual page and the completion agree.
set -u
build=$1
source=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
failures=0

expect() {  # expect WHAT EXPECTED ACTUAL
  diff <(echo "$2") <(echo "$3") && return
  echo "FAILED: $1 (<: expected, >: found)"
  failures=$((failures + 1))
}

cmake --install "$build" --prefix "$folder/there" >/dev/null || exit 1
mv there "moved tree"
command="$folder/moved tree/bin/kraid-inventory"
expect "the files" "bin/kraid-inventory
lib/kraid-inventory/libhmzcore.so
lib/kraid-inventory/libkraid.pi.so
lib/kraid-inventory/libplugin.nsp.so
share/bash-completion/completions/kraid-inventory
share/doc/kraid-inventory/fleet.md
share/doc/kraid-inventory/html.md
share/doc/kraid-inventory/json.md
share/doc/kraid-inventory/mof.md
share/doc/kraid-inventory/recordings.md
share/doc/kraid-inventory/report.md
share/kraid-inventory/fleet/alertmanager.yml
share/kraid-inventory/fleet/global.yml
share/kraid-inventory/fleet/icinga2/kraid-inventory.conf
share/kraid-inventory/fleet/kraid-alerts.yml
share/kraid-inventory/fleet/kraid-recording.yml
share/kraid-inventory/fleet/machines.yml
share/kraid-inventory/fleet/prometheus.yml
share/kraid-inventory/fleet/questions.md
share/kraid-inventory/fleet/shard.yml
share/kraid-inventory/inventory.schema.json
share/kraid-inventory/kvxsg.mof
share/man/man1/kraid-inventory.1" "$(cd "moved tree" && find . -type f | cut -c3- | LC_ALL=C sort)"

# Not even what it was built from may be found: the path of the build tree would hide a wrong one.
expect "a path of the build tree" "" "$(grep -rl -F "$build/lib" "moved tree/bin" "moved tree/lib")"
# Another host has no such function: the plug-in has to load without it.
expect "a function that a host may lack" w "$(nm -DC "moved tree/lib/kraid-inventory/libkraid.pi.so" |
  sed -n 's/^ *\(.\) NKVXHMZ20::OpenHostFile.*/\1/p')"
class=KVXSG_krSCSIProtocolController
expect "controllers" 4 "$(env -i "$command" --trust-tools --root "$source/demo" --format json $class |
  grep -c "\"class\": \"$class\"")"

help=$("$command" --help | grep -oE '^ +(-[a-z], *)?--[a-z-]+' | grep -oE -- '--.*' | sort)
page="moved tree/share/man/man1/kraid-inventory.1"
expect "options of the manual page" "$help" "$(
  grep '^\.It Fl' "$page" | tr -d '\\' | sed -nE 's/.*Fl (-[a-z-]+).*/-\1/p' | sort)"
expect "version of the manual page" "$("$command" --version)" "$(sed -n 's/^\.Os //p' "$page")"

completion="$folder/moved tree/share/bash-completion/completions/kraid-inventory"
expect "options of the completion" "$help" "$(
  . "$completion"
  COMP_WORDS=(kraid-inventory --) COMP_CWORD=1
  _kraid_inventory kraid-inventory
  printf '%s\n' "${COMPREPLY[@]}" | sort)"

# The completion as it is used: lines typed on a terminal, with a command that shows its arguments.
mkdir "some folder"
touch "some file"
cat >kraid-inventory <<END
#!/bin/sh
if [ "\$1" = --list ]; then [ -e broken ] || exec '$command' --list; echo oops >&2; exit 1; fi
printf '<%s>' "\$@" >>seen
echo >>seen
END
chmod +x kraid-inventory
expected=""
exec 3>typed
printf '. "%s"\n' "$completion" >&3
while IFS='|' read -r typed arguments; do
  printf "$typed\n" >&3
  expected+=${arguments:+$arguments$'\n'}
done <<'END'
./kraid-inventory --fo\tjs\t            |<--format><json>
./kraid-inventory --format=m\t          |<--format=mof>
./kraid-inventory --format=\t\tte\t     |<--format=text>
./kraid-inventory --color al\t--ch\t    |<--color><always><--check>
./kraid-inventory --root some\t         |<--root><some folder/>
./kraid-inventory --output some\\ fi\t  |<--output><some file>
./kraid-inventory --log=some\\ fi\t     |<--log=some file>
./kraid-inventory --passes KVX\t        |<--passes><KVX>
./kraid-inventory KVXSG_krDisk\tD\tV\t |<KVXSG_krDiskDriveVersion>
./kraid-inventory -- KVXSG_krR\t--fo\t  |<--><KVXSG_krRawData><--fo>
./kraid-inventory --check KVXSG_krR\t   |<--check><KVXSG_krR>
./kraid-inventory --tool\t2 --v\tbose\t |<--tool-timeout><2><--verbose>
touch broken                            |
./kraid-inventory KVX\t                 |<KVX>
END
echo exit >&3
INPUTRC=/dev/null script -qec "bash --norc --noprofile -i" /dev/null <typed >terminal
expect "completed lines" "${expected%$'\n'}" "$(cat seen)"
expect "complaints of a command that cannot list" "" "$(grep oops terminal)"

[ "$failures" -eq 0 ]
