#!/usr/bin/env bash
# Start-up of the interactive program on an empty store: from the moment the process is started to
# the main window on the screen (exposed and painted), under a virtual X display.
#
#   bench/startup_bench.sh [BUILD_DIR] [RUNS]
#
# Needs xvfb-run (xvfb and xauth). BUILD_DIR (default "build") must hold the built zelto. Each run
# has fresh, empty settings and data folders. ZELTO_EXIT_AFTER_SHOW makes the program print the
# moment its window was first shown and end; the whole process time (to its exit) is given too.
set -euo pipefail

BUILD=$(cd "${1:-build}" && pwd)
RUNS=${2:-15}
ZELTO="$BUILD/zelto"
[ -x "$ZELTO" ] || { echo "build $ZELTO first" >&2; exit 2; }

# One virtual display for every run, so that its own start is not counted.
if [ -z "${STARTUP_BENCH_INSIDE:-}" ]; then
  command -v xvfb-run >/dev/null || { echo "xvfb-run is missing" >&2; exit 2; }
  exec env STARTUP_BENCH_INSIDE=1 xvfb-run -a -s "-screen 0 1280x800x24" "$0" "$BUILD" "$RUNS"
fi

. "$(dirname "$0")/bench_lib.sh"
bench_workdir

now_ms() { echo $(( $(date +%s%N) / 1000000 )); }

# run_once PLATFORM: appends "shown-ms exit-ms" to $WORK/PLATFORM.
run_once() {
  local platform=$1 home="$WORK/home" start out shown
  rm -rf "$home"
  mkdir -p "$home"
  start=$(now_ms)
  out=$(env XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" QT_QPA_PLATFORM="$platform" \
    ZELTO_EXIT_AFTER_SHOW=1 timeout 30 "$ZELTO" 2>/dev/null)
  local end
  end=$(now_ms)
  shown=$(sed -n 's/^zelto: main window shown at \([0-9]*\) ms$/\1/p' <<< "$out")
  [ -n "$shown" ] || { echo "no window shown ($platform): $out" >&2; exit 1; }
  echo "$((shown - start)) $((end - start))" >> "$WORK/$platform"
}

echo "Start-up on an empty store, $RUNS runs each (ms)"
printf '%-10s %14s %14s %10s %10s\n' platform "to window" "to exit" "min" "max"
for platform in xcb offscreen; do
  run_once "$platform" # the first run warms the file cache; it is not counted
  : > "$WORK/$platform"
  for _ in $(seq "$RUNS"); do run_once "$platform"; done
  printf '%-10s %14s %14s %10s %10s\n' "$platform" "$(median "$platform" 1)" \
    "$(median "$platform" 2)" "$(sort -n "$WORK/$platform" | head -n1 | cut -d' ' -f1)" \
    "$(sort -n "$WORK/$platform" | tail -n1 | cut -d' ' -f1)"
done
