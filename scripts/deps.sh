#!/usr/bin/env bash
# Installs the Debian packages the build needs, when any is missing: the
# compiler and test framework, Qt 6 Widgets with a font for the window and its
# offscreen tests, the SQLite and PostgreSQL drivers of Qt SQL for the practice
# desk, a PostgreSQL server with its contrib modules for the shared-desk tests,
# libsodium for the password hashes of a file's users, openssl for the test
# server's certificate, and a virtual X display with the AT-SPI bus for the
# screen-reader tests.
set -euo pipefail
needed=(cmake g++ make libgtest-dev libgmock-dev qt6-base-dev qt6-tools-dev libqt6sql6-sqlite libqt6sql6-psql postgresql postgresql-contrib fonts-dejavu-core
        xvfb dbus at-spi2-core python3-pyatspi doxygen pkg-config libsodium-dev openssl)
[ "${QUORVANE_NEED_CLANG:-0}" = 1 ] && needed+=(clang libclang-rt-dev)
[ "${QUORVANE_NEED_BENCH:-0}" = 1 ] && needed+=(libbenchmark-dev)
missing=()
for p in "${needed[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""; [ "$(id -u)" = 0 ] || sudo=sudo
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq "${missing[@]}"
fi
