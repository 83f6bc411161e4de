#!/bin/sh
# Builds everything with the sanitizers and runs all tests, then runs the end-to-end tests against
# the optimised build that users run.
set -eu
cd "$(dirname "$0")"
. scripts/setup.sh
need build test
jobs=$(nproc)

build asan
ctest --preset asan -j "$jobs"
build release -DKRAID_BUILD_TESTS=ON -DKRAID_TEST_LABEL=end_to_end
ctest --preset release -j "$jobs" -L end_to_end
