#!/bin/sh
# check-tidy.sh BUILD_DIR [CHECKS]: runs clang-tidy over all sources that the build knows. CHECKS
# changes the list in .clang-tidy; without it those are left out that take long and have little to
# find here: the analyzer, and what looks through all of the system's headers. scripts/check-deep.sh
# has them all.
set -eu
build=$(cd "$1" && pwd)
costly='-clang-analyzer-*,-bugprone-assert-side-effect,-bugprone-infinite-loop,
  -bugprone-implicit-widening-of-multiplication-result,-bugprone-multiple-statement-macro,
  -bugprone-reserved-identifier,-bugprone-stringview-nullptr,-bugprone-suspicious-semicolon,
  -bugprone-suspicious-string-compare'
checks=${2-$costly}
cd "$(dirname "$0")/.."
database=$(mktemp -d)
trap 'rm -r "$database"' EXIT
# Options of GCC's that clang refuses to read.
sed 's/-fno-gnu-unique//g; s/-Wno-restrict//g' "$build/compile_commands.json" \
  >"$database/compile_commands.json"
# Standard error counts what was suppressed, for each file; it is of use only when something fails.
if ! git ls-files '*.cc' | xargs -P "$(nproc)" -n 1 \
    clang-tidy-14 --quiet -p "$database" --checks="$checks" 2>"$database/errors"; then
  grep -v ' warnings\{0,1\} generated\.$' "$database/errors" >&2 || true
  echo "clang-tidy has findings" >&2
  exit 1
fi
