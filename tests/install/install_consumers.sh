#!/usr/bin/env bash
# Installs the build tree into a temporary prefix, builds two out-of-tree
# consumers against the installed files (a C99 program through pkg-config, a
# C++ program through find_package(sessmgr)) and runs both against the
# simulator on a private queue.
# Usage: install_consumers.sh <build dir> <consumers source dir>
set -euo pipefail
build=$1
consumers=$2
work=$(mktemp -d "${TMPDIR:-/tmp}/smgr-install.XXXXXX")
queue="/smgrinst-$$"
pidfile="$work/sim.pid"
cleanup() {
  [ -f "$pidfile" ] && kill "$(cat "$pidfile")" 2>/dev/null && sleep 0.3
  rm -f "/dev/mqueue$queue" 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT

prefix="$work/prefix"
cmake --install "$build" --prefix "$prefix" >/dev/null
libdir=$(dirname "$(find "$prefix" -name 'libsessmgr.so.1' | head -n 1)")
export PKG_CONFIG_PATH="$libdir/pkgconfig"
export LD_LIBRARY_PATH="$libdir"

# C99 through pkg-config.
# shellcheck disable=SC2046 # pkg-config prints several words on purpose
cc -std=c99 -pedantic -Wall -Wextra -Werror -o "$work/c99_consumer" "$consumers/c99_consumer.c" \
  $(pkg-config --cflags --libs sessmgr)

# C++ through the CMake package.
cmake -S "$consumers" -B "$work/cxx" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cxx" >/dev/null

# Both against the installed simulator.
export SESSMGR_DAEMON_QUEUE="$queue"
export SESSMGR_STARTED_MARKER="$work/marker"
export SESSMGR_SETTINGS_FILE="$work/settings.ini"
printf '[API Library]\nInitIPCTimeout=2\nResponseTimeout=5000\n' >"$SESSMGR_SETTINGS_FILE"
"$prefix/bin/sessmgrd-sim" --queue "$queue" --max-messages 4 --state-dir "$work/state" \
  --pid-file "$pidfile" --log-file "$work/sim.log"
for _ in $(seq 50); do [ -s "$pidfile" ] && break; sleep 0.1; done
"$work/c99_consumer"
"$work/cxx/cxx_consumer"
"$prefix/bin/smgrctl" stream list >/dev/null
echo "install test: headers, pkg-config file and CMake package work from $prefix"
