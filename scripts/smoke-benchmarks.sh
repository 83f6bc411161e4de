#!/bin/sh
# smoke-benchmarks.sh BUILD_DIR: runs each benchmark for an instant. It shows that they work, not
# how fast anything is.
set -eu
for benchmark in "$1"/bench/*_benchmark; do
  KRAID_BENCH_RESIDENT_MB=64 KRAID_BENCH_LOG_LINES=1000 "$benchmark" --benchmark_min_time=0.01 >&2
done
