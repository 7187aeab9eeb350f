#!/usr/bin/env bash
# The main job: builds the library and runs the example host, which brings the
# control up the way a practice's application would and prints what it shows.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/deps.sh"
dir="$root/build"
cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=Release -DQUORVANE_BUILD_TESTS=OFF >/dev/null
cmake --build "$dir" -j "$(nproc)" --target example-host
"$dir/example-host"
