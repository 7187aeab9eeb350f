#!/usr/bin/env bash
# Builds the benchmarks in release mode and runs them: the catalogue's, the
# window's paint and drag offscreen, the store's at three sizes of history on
# SQLite and on a PostgreSQL server it starts (the practices are generated once
# into QUORVANE_STORE_BENCH_DATA, a temporary folder unless set; ten years take
# a few minutes per engine), and 2, 5, 10 and 20 desks at once on one server for
# a minute each (QUORVANE_LOAD_SECONDS), held to a p99 of 500 ms.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
QUORVANE_NEED_BENCH=1 "$root/scripts/deps.sh"
dir="$root/build-bench"
cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=Release -DQUORVANE_BUILD_BENCH=ON -DQUORVANE_BUILD_TESTS=OFF \
  -DQUORVANE_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$dir" -j "$(nproc)" --target catalogue-bench gesture-bench paint-bench store-bench desks-load
for bench in catalogue-bench gesture-bench; do
  "$dir/$bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true "$@"
done
QT_QPA_PLATFORM=offscreen "$dir/paint-bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true "$@"
# Repetitions interleaved at random, so that no size gains from running first.
"$dir/store-bench" --benchmark_repetitions=5 --benchmark_enable_random_interleaving=true \
  --benchmark_report_aggregates_only=true --benchmark_out="$dir/store-bench.json" --benchmark_out_format=json "$@"
python3 "$root/scripts/store_ratios.py" "$dir/store-bench.json"
for desks in 2 5 10 20; do
  "$dir/desks-load" --desks "$desks" --seconds "${QUORVANE_LOAD_SECONDS:-60}" --goal-ms 500
done
