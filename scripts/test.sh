#!/usr/bin/env bash
# Builds the library and its tests twice, plainly and under AddressSanitizer and
# UndefinedBehaviorSanitizer, with warnings as errors, and runs every test in both.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/deps.sh"
jobs="$(nproc)"
for cfg in release asan; do
  dir="$root/build-test-$cfg"
  extra=(-DCMAKE_BUILD_TYPE=Release)
  [ "$cfg" = asan ] && extra=(-DCMAKE_BUILD_TYPE=Debug -DQUORVANE_SANITIZE=ON)
  cmake -S "$root" -B "$dir" -DQUORVANE_WERROR=ON "${extra[@]}" >/dev/null
  cmake --build "$dir" -j "$jobs"
  echo "== tests ($cfg)"
  ctest --test-dir "$dir" --output-on-failure -j "$jobs"
done
# The re-entrant host scripts print the same transcript in both builds.
echo "== re-entrant scripts: plain and sanitizer transcripts"
for t in "$root"/build-test-release/reentrancy/*.transcript; do
  cmp "$t" "$root/build-test-asan/reentrancy/$(basename "$t")"
done
