#!/usr/bin/env bash
# Builds the benchmarks in release mode and runs them: the catalogue's, the
# window's paint and drag offscreen, and the store's at three sizes of history
# (its SQLite practices are generated once into QUORVANE_STORE_BENCH_DATA, a
# temporary folder unless set; ten years take a few minutes).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
QUORVANE_NEED_BENCH=1 "$root/scripts/deps.sh"
dir="$root/build-bench"
cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=Release -DQUORVANE_BUILD_BENCH=ON -DQUORVANE_BUILD_TESTS=OFF \
  -DQUORVANE_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$dir" -j "$(nproc)" --target catalogue-bench gesture-bench paint-bench store-bench
for bench in catalogue-bench gesture-bench; do
  "$dir/$bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true "$@"
done
QT_QPA_PLATFORM=offscreen "$dir/paint-bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true "$@"
"$dir/store-bench" --benchmark_repetitions=3 --benchmark_report_aggregates_only=true "$@"
