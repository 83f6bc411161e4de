# Sourced by demo.sh and test.sh: installs what the named purposes need and is not there yet.
#
#   need PURPOSE...      build, test, check, fuzz, package, fleet, browser
#
# On Debian and its relatives through apt-get (with sudo when not root); elsewhere it says what is
# needed and goes on.

packages_build="g++ cmake ninja-build libboost-dev libcli11-dev libsodium-dev nlohmann-json3-dev"
packages_test="libgtest-dev jq python3-jsonschema python3-prometheus-client systemd"
packages_check="git clang-format-14 clang-tidy-14 libbenchmark-dev"
packages_fuzz="clang-14 libclang-rt-14-dev"
packages_package="dpkg-dev file jq lintian man-db mandoc systemd"
packages_fleet="curl icinga2-bin jq prometheus prometheus-alertmanager prometheus-node-exporter python3 python3-prometheus-client python3-yaml"
packages_browser="chromium poppler-utils tidy"
# Not where they came from elsewhere: that makes no Debian package of npm's parts.
command -v node >/dev/null 2>&1 || packages_browser="$packages_browser nodejs"
command -v npm >/dev/null 2>&1 || packages_browser="$packages_browser npm"

need() {
  wanted=""
  for purpose in "$@"; do
    eval "wanted=\"\$wanted \$packages_$purpose\""
  done
  if ! command -v dpkg-query >/dev/null 2>&1 || ! command -v apt-get >/dev/null 2>&1; then
    echo "This is no Debian system. Please have what these packages of Debian's hold:$wanted" >&2
    return 0
  fi
  missing=""
  for package in $wanted; do
    status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing="$missing $package"
  done
  [ -n "$missing" ] || return 0
  as_root=""
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
      echo "These packages are missing, and neither root nor sudo is there:$missing" >&2
      exit 1
    fi
    as_root=sudo
  fi
  echo "Installing:$missing" >&2
  # shellcheck disable=SC2086  # the list is meant to be split
  {
    $as_root apt-get update -qq
    $as_root env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -qq --no-install-recommends $missing
  } >&2
}

# build PRESET [CMAKE_OPTION...]: configures where that has not happened yet, and builds. What it
# prints goes to standard error: standard output is for the results.
build() {
  preset=$1
  shift
  cmake --preset "$preset" --log-level=NOTICE "$@" >&2
  cmake --build --preset "$preset" >&2
}

# need_browser: what the test in a browser needs, its two packages of npm's as their lock file has them.
need_browser() {
  need browser
  [ -e tests/browser/node_modules ] || npm ci --prefix tests/browser --no-audit --no-fund >&2
}
