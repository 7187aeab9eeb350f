#!/usr/bin/env bash
# The main job: builds the practice desk and opens it. Where there is no display
# it plays a morning at the desk offscreen instead, with real mouse and key
# events, and says where its screenshots and printout are.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/deps.sh"
dir="$root/build-run"
cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=Release -DQUORVANE_BUILD_TESTS=OFF >/dev/null
cmake --build "$dir" -j "$(nproc)" --target practice-desk scheduler-host
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$dir/apps/practice-desk/practice-desk" "$@"
fi
morning="$dir/morning"
rm -rf "$morning"
QT_QPA_PLATFORM=offscreen "$dir/apps/practice-desk/practice-desk" --database "$morning/practice.sqlite" --demo \
  --morning "$morning" "$@" 2> >(grep -v -e "does not support" -e XDG_RUNTIME_DIR >&2)
