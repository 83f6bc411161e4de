#!/bin/sh
# check-package.sh [BUILD_DIR]: makes the Debian package from a finished build (build/release),
# checks it, installs it, tries what it installed, and removes it again. The machine is then as it
# was, also when a check fails. Needs root or sudo.
set -eu
cd "$(dirname "$0")/.."
build=${1:-build/release}
name=kraid-inventory
wants=/etc/systemd/system/timers.target.wants

fail() {
  echo "check-package: $*" >&2
  exit 1
}

as_root=""
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || fail "installing needs root, or sudo"
  as_root=sudo
fi
status=$(dpkg-query -W -f '${db:Status-Abbrev}' $name 2>/dev/null || true)
case $status in
  "" | ?n*) ;;
  *) fail "the package $name is on this machine already ($status): it is left alone" ;;
esac
if found=$(command -v $name); then fail "there is $found already: it is left alone"; fi
[ ! -e /var/lib/$name ] || fail "there is /var/lib/$name already: it is left alone"

work=$(mktemp -d)
installing=""
clean_up() {
  # The status of what has failed is kept, whatever happens here.
  code=$?
  trap - EXIT
  if [ -n "$installing" ]; then
    $as_root dpkg --purge $name >/dev/null 2>&1 || code=1
    $as_root rm -rf /var/lib/$name $wants/$name.timer  # whatever its own scripts do
  fi
  rm -rf "$work"
  exit $code
}
trap clean_up EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

(cd "$build" && cpack -G DEB -B "$work/cpack") >"$work/log" 2>&1 || {
  cat "$work/log" >&2
  fail "cpack failed"
}
package=$(ls "$work"/cpack/*.deb)
version=$(dpkg-deb -f "$package" Version)
dpkg-deb --fsys-tarfile "$package" | tar -xO ./usr/share/doc/$name/changelog.gz |
  gzip -d >"$work/changelog"
[ "$version" = "$(dpkg-parsechangelog -l "$work/changelog" -S Version)" ] ||
  fail "CHANGELOG.md does not have version $version as the last one"
echo "lintian:"
lintian --fail-on error --allow-root "$package"

# What is there of it: every path of the package, and whatever has its name.
traces() {
  dpkg-deb --fsys-tarfile "$package" | tar -t | sed -n 's,^\.\(/.*[^/]\)/*$,\1,p' |
    while read -r path; do if [ -e "$path" ]; then echo "$path"; fi; done
  # shellcheck disable=SC2086  # empty, or one word
  $as_root find /etc /usr /var /run -xdev -name "*$name*" 2>/dev/null
}
traces >"$work/before" || true
installing=yes
# The images of containers often leave out manual pages.
$as_root dpkg --path-include='/usr/share/*' --install "$package" >"$work/log" 2>&1 || {
  cat "$work/log" >&2
  fail "the package cannot be installed"
}

[ "$(command -v $name)" = /usr/bin/$name ] || fail "the command is not found"
run() { env -i PATH=/usr/bin:/bin HOME="$work" $name "$@"; }
[ "$(run --version)" = "$name $version" ] || fail "--version gives $(run --version)"
if run --help | grep -q -e --list; then
  classes=$(run --list | wc -l)
  [ "$classes" -eq 28 ] || fail "--list gives $classes classes"
fi
controllers=$(run --trust-tools --root demo --format json |
  jq '[.instances[] | select(.class == "KVXSG_krSCSIProtocolController")] | length')
[ "$controllers" = 4 ] || fail "the sample machine has $controllers controllers"

page=$(man -w $name) || fail "man does not find the page"
warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -Tutf8 -E UTF-8 "$page" 2>&1 >"$work/page")
[ -z "$warnings" ] || fail "man complains: $warnings"
grep -q "$name $version" "$work/page" || fail "the manual page is not that of version $version"
zcat "$page" | mandoc -T lint -W warning || fail "mandoc complains about the manual page"
bash -n /usr/share/bash-completion/completions/$name || fail "the completion cannot be read"
for document in copyright changelog.gz fleet.md html.md json.md mof.md report.md; do
  [ -s /usr/share/doc/$name/$document ] || fail "$document is missing"
done

# The units: nothing is enabled before somebody says so, and that ends with the package; so do metrics,
# wherever they were published. What was recorded stays until the purge.
units=/usr/lib/systemd/system
complaints=$(systemd-analyze verify --man=no $units/$name.service $units/$name.timer 2>&1) ||
  fail "systemd-analyze: $complaints"
[ -z "$complaints" ] || fail "systemd-analyze complains: $complaints"
[ ! -e $wants/$name.timer ] || fail "the timer is enabled by installing"
$as_root systemctl --quiet enable $name.timer
[ -e $wants/$name.timer ] || fail "the timer is not enabled by one command"
mkdir "$work/metrics"
echo " KRAID_METRICS_FOLDER=\"$work/metrics\" " | $as_root tee -a /etc/default/$name >/dev/null
$as_root mkdir -p /var/lib/$name
run --replay demo --format openmetrics --output "$work/kraid.prom"
$as_root env EXIT_CODE=exited RUNTIME_DIRECTORY="$work" KRAID_METRICS_FOLDER="$work/metrics" \
  /usr/lib/$name/publish-metrics
grep -q '^kraid_controllers 4$' "$work/metrics/kraid.prom" || fail "the metrics are not published"
$as_root dpkg --remove $name >"$work/log" 2>&1 || fail "removing failed: $(cat "$work/log")"
[ ! -L $wants/$name.timer ] || fail "the timer is still enabled"
[ ! -e "$work/metrics/kraid.prom" ] || fail "the metrics are still published"
[ -d /var/lib/$name ] || fail "what was recorded is gone before the purge"

$as_root dpkg --purge $name >"$work/log" 2>&1 || fail "purging failed: $(cat "$work/log")"
installing=""
traces >"$work/after" || true
diff "$work/before" "$work/after" || fail "this is left behind (>), or gone (<)"
echo "check-package: $name $version installs, works and goes without a trace"
