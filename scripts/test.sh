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
# The shared libraries, installed and used by a host through CMake and through
# pkg-config, as the static ones are by package.find_package above.
echo "== the shared libraries, as a host installs them"
dir="$root/build-test-shared"
cmake -S "$root" -B "$dir" -DQUORVANE_WERROR=ON -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON \
  -DQUORVANE_BUILD_TESTS=OFF -DQUORVANE_BUILD_EXAMPLES=OFF >/dev/null
installed=(QuorvaneScheduler QuorvaneSchedulerScript scheduler-host)
# and the Qt ones, when this machine has Qt to build them.
installed+=($(cmake --build "$dir" --target help | grep -oE '(QuorvaneSchedulerWidgets|quorvane-designer-plugin)$' || true))
cmake --build "$dir" -j "$jobs" --target "${installed[@]}"
cmake -DBUILD="$dir" -DSOURCE="$root/tests/package" -DWORK="$dir/package-check" -DCOMPILER=c++ \
  -DEXAMPLE="$root/examples/embedding.cpp" -P "$root/tests/package/check_package.cmake"
# The re-entrant host scripts print the same transcript in both builds.
echo "== re-entrant scripts: plain and sanitizer transcripts"
for t in "$root"/build-test-release/reentrancy/*.transcript; do
  cmp "$t" "$root/build-test-asan/reentrancy/$(basename "$t")"
done
