#!/usr/bin/env bash
# The demo of a real distribution: three FTP servers on this machine (one of them refuses every
# login, to show how a failure is reported), a small web site in nested folders, three site
# profiles, a file list and a link joining them; then Zelto sends the link unattended
# ("zelto -l demo") and the script shows where each file landed.
#
#   tools/demo.sh [BUILD_DIR]
#
# Settings and data live under BUILD_DIR/demo-home, never in your own. The servers stop when the
# script ends, also when it is interrupted.
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
BUILD=$(cd "${1:-build}" && pwd)
. "$ROOT/tools/demo_setup.sh"
demo_setup

MODE="headless, no display"
[ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && MODE="with the display; the window stays hidden in a link run"
echo "== zelto -l demo ($MODE)"
status=0
"$ZELTO" -l demo || status=$?
echo "   exit status $status (0: every file reached every site, 1: some did not)"

echo "== Where the files landed (under each server's folder, in the local folders they came from)"
(cd "$DEMO/servers" && find . -type f -printf '   %P  (%s bytes)\n' | sort)
for name in "${NAMES[@]}"; do
  [ -n "$(find "$DEMO/servers/$name" -type f)" ] || echo "   $name: nothing (it refused the login)"
done
LOG=$(find "$DATA" -maxdepth 1 -name '*.log' | head -n 1)
[ -n "$LOG" ] && echo "== The log of the run: $LOG"
exit 0
