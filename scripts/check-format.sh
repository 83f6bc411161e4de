#!/bin/sh
# Fails on the first source file that clang-format would change.
set -eu
cd "$(dirname "$0")/.."
git ls-files '*.cc' '*.h' | xargs clang-format-14 --dry-run -Werror
