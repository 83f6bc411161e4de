#!/bin/sh
# check-tidy.sh BUILD_DIR: runs clang-tidy over all sources that the build knows.
set -eu
build=$(cd "$1" && pwd)
cd "$(dirname "$0")/.."
database=$(mktemp -d)
trap 'rm -r "$database"' EXIT
# Options of GCC's that clang refuses to read.
sed 's/-fno-gnu-unique//g; s/-Wno-restrict//g' "$build/compile_commands.json" >"$database/compile_commands.json"
# Standard error counts what was suppressed, for each file; it is of use only when something fails.
if ! git ls-files '*.cc' |
    xargs -P "$(nproc)" -n 4 clang-tidy-14 --quiet -p "$database" 2>"$database/errors"; then
  grep -v ' warnings\{0,1\} generated\.$' "$database/errors" >&2 || true
  echo "clang-tidy has findings" >&2
  exit 1
fi
