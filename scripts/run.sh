#!/usr/bin/env bash
# The main job: builds the library and its host console, then runs the example
# script of a practice's morning through the console and shows its transcript.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/deps.sh"
dir="$root/build-run"
cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=Release -DQUORVANE_BUILD_TESTS=OFF >/dev/null
cmake --build "$dir" -j "$(nproc)" --target scheduler-host
"$dir/scheduler-host" --today 11/23/2026 "$root/examples/morning.host"
