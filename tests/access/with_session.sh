#!/usr/bin/env bash
# Runs a command in an assistive-technology session of its own: a virtual X
# display, a D-Bus session bus, and the AT-SPI bus with its registry, all
# stopped when the command ends. Qt's AT-SPI bridge needs a real X display,
# and is kept on without a screen reader asking for it. Exits 77, which ctest
# counts as skipped, naming a package that is missing.
set -euo pipefail
need() { echo "skipped: $1 is not installed (Debian package $2)"; exit 77; }
command -v Xvfb >/dev/null || need Xvfb xvfb
command -v dbus-run-session >/dev/null || need dbus-run-session dbus
[ -x /usr/libexec/at-spi-bus-launcher ] || need at-spi-bus-launcher at-spi2-core
/usr/bin/python3 -c 'import pyatspi' 2>/dev/null || need pyatspi python3-pyatspi

if [ "${QUORVANE_IN_SESSION:-}" != 1 ]; then
  work=$(mktemp -d)
  # A display number drawn at random, and another if that one is taken:
  # sessions started side by side never share one.
  display=""
  for _ in $(seq 20); do
    n=$((100 + RANDOM % 800))
    [ -e /tmp/.X$n-lock ] && continue
    # It writes its number to fd 3 once it takes connections.
    rm -f "$work/ready"
    Xvfb :$n -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp 3>"$work/ready" >"$work/xvfb.log" 2>&1 &
    xvfb=$!
    for _ in $(seq 200); do
      [ -s "$work/ready" ] && { display=$n; break; }
      kill -0 $xvfb 2>/dev/null || break
      sleep 0.05
    done
    [ -n "$display" ] && break
    kill $xvfb 2>/dev/null || true
  done
  [ -n "$display" ] || { echo "Xvfb did not start:"; cat "$work/xvfb.log"; exit 1; }
  trap 'kill $xvfb 2>/dev/null; wait $xvfb 2>/dev/null; rm -rf "$work"' EXIT
  export DISPLAY=:$display XDG_RUNTIME_DIR=$work QUORVANE_IN_SESSION=1
  status=0
  dbus-run-session -- "$0" "$@" || status=$?
  exit $status
fi

/usr/libexec/at-spi-bus-launcher --launch-immediately >/dev/null 2>&1 &
launcher=$!
for _ in $(seq 100); do
  dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress >/dev/null 2>&1 && break
  sleep 0.05
done
export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 QT_ACCESSIBILITY=1
status=0
"$@" || status=$?
kill $launcher 2>/dev/null || true
wait $launcher 2>/dev/null || true
exit $status
