#!/bin/sh
# check-tidy.sh BUILD_DIR: runs clang-tidy over all sources that the build knows.
set -eu
build=$(cd "$1" && pwd)
cd "$(dirname "$0")/.."
database=$(mktemp -d)
trap 'rm -r "$database"' EXIT
# Options of GCC's that clang refuses to read.
sed 's/-fno-gnu-unique//g; s/-Wno-restrict//g' "$build/compile_commands.json" >"$database/compile_commands.json"
git ls-files '*.cc' | xargs -P "$(nproc)" -n 4 clang-tidy-14 --quiet -p "$database"
