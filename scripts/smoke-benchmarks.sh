#!/bin/sh
# smoke-benchmarks.sh BUILD_DIR: runs each benchmark for an instant, with little to do. It shows that
# they work, not how fast anything is.
set -eu
export KRAID_BENCH_DRIVES=50 KRAID_BENCH_LOG_LINES=1000 KRAID_BENCH_RESIDENT_MB=16 KRAID_BENCH_RUNS=20
for benchmark in "$1"/bench/*_benchmark; do "$benchmark" --benchmark_min_time=0.001 >&2; done
