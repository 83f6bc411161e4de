#!/bin/sh
# What takes too long for every change, and is run before a release: all checks of clang-tidy, its
# analyzer among them, and all tests of a build without sanitizers.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh
need build test check

build debug -DKRAID_BUILD_BENCHMARKS=ON
scripts/check-tidy.sh build/debug ""
ctest --preset debug -j "$(nproc)"
