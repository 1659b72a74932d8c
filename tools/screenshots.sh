#!/usr/bin/env bash
# Screenshots for the documentation, taken from the real program under a virtual X display with
# the demo's servers and data (tools/demo_setup.sh). The scheduler sends the link "demo" a few
# seconds after the start; the two servers that accept the login hold each upload for a moment, so
# that the transfers can be seen at work.
#
#   tools/screenshots.sh [BUILD_DIR] [OUT_DIR]      (defaults: build, docs/screenshots)
#
# Writes to OUT_DIR:
#   main-window.png       the main window on the Multiple FTP Put screen, with its three bars
#   transfer-windows.png  the main window and its transfer windows while the link's transfers run
#   log-view.png          the main window once the transfers have ended: the log of the run
#   script-window.png     the progress window of a script that the scheduler ran beside the link
#
# Needs xvfb-run (xvfb, xauth) and the demo's python3 with pyftpdlib. Optional: xdotool and
# x11-utils (to choose the link on the profile bar and to shoot the script's window) and openbox
# (title bars). Settings and data live under
# BUILD_DIR/demo-home, never in your own.
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
BUILD=$(cd "${1:-build}" && pwd)
OUT=$(mkdir -p "${2:-$ROOT/docs/screenshots}" && cd "${2:-$ROOT/docs/screenshots}" && pwd)
SCREEN_SIZE=1280x800
# Where the main window stands and how large it is.
X=20 Y=20 WIDTH=1040 HEIGHT=680

# The virtual display keeps its screen in a file (an X window dump) that is copied for each shot.
if [ -z "${SCREENSHOTS_FB:-}" ]; then
  command -v xvfb-run >/dev/null || { echo "xvfb-run is missing (xvfb, xauth)" >&2; exit 2; }
  FB=$(mktemp -d)
  trap 'rm -rf "$FB"' EXIT
  status=0
  env SCREENSHOTS_FB="$FB" xvfb-run -a -s "-screen 0 ${SCREEN_SIZE}x24 -fbdir $FB" \
    "$0" "$BUILD" "$OUT" || status=$?
  exit "$status"
fi

. "$ROOT/tools/demo_setup.sh"
demo_setup

# shot NAME [X Y W H]: the screen now, or the part of it given.
shot() {
  local name=$1
  shift
  cp "$SCREENSHOTS_FB/Xvfb_screen0" "$DEMO/run/screen.xwd"
  "$PYTHON" "$ROOT/tools/xwd_to_png.py" "$DEMO/run/screen.xwd" "$OUT/$name.png" "$@"
  echo "   $OUT/$name.png"
}
# frame_shot NAME WINDOW: that window, with the title bar that a window manager drew around it.
frame_shot() {
  local extents info left right top bottom
  extents=$(xprop -id "$2" _NET_FRAME_EXTENTS | grep -o '[0-9].*') || extents="0, 0, 0, 0"
  IFS=', ' read -r left right top bottom <<<"$extents"
  info=$(xwininfo -id "$2")
  field() { sed -n "s/^ *$1: *//p" <<<"$info"; }
  shot "$1" "$(($(field 'Absolute upper-left X') - left))" \
    "$(($(field 'Absolute upper-left Y') - top))" "$(($(field Width) + left + right))" \
    "$(($(field Height) + top + bottom))"
}
# window_shot NAME: the main window.
MAIN_WINDOW=
window_shot() {
  if [ -n "$MAIN_WINDOW" ]; then
    frame_shot "$1" "$MAIN_WINDOW"
  else
    shot "$1" "$X" "$Y" "$WIDTH" "$HEIGHT"
  fi
}
# The window tools: xdotool finds and drives windows, xprop and xwininfo measure them.
TOOLS=
command -v xdotool >/dev/null && command -v xprop >/dev/null && command -v xwininfo >/dev/null \
  && TOOLS=yes

for name in alpha beta; do demo_faults "$name" '{"stall": {"STOR": 1.5}}'; done

# The scheduler's first check comes 5 seconds after the start and runs the entries of that minute:
# start early enough in a minute for the check to fall in it.
while [ "$(date +%-S)" -gt 45 ]; do sleep 1; done
AT=$(date -d '+6 seconds' +%H:%M)
cat >> "$SETTINGS" <<EOT

[CONFIG]
ToolBar=1
StatusBar=1
ProfileBar=1
StartScreen=MULTIPLE_PUT
Scheduler=YES

[SCHEDULE]
NumTimers=2
Timer0=demo Daily ---- $AT On
Timer1=publish.cmd Daily ---- $AT On

[Dimensions%5CMain%5CMainframe]
Width=$WIDTH
Height=$HEIGHT
x=$X
y=$Y
EOT

# With a window manager (openbox) the windows wear their title bars, as on a desktop.
WM_PID=
if command -v openbox >/dev/null; then
  openbox > "$DEMO/run/openbox.out" 2>&1 &
  WM_PID=$!
fi

# A script beside the link: a release folder on alpha, and a login that gamma refuses.
cat > "$DATA/publish.cmd" <<EOT
/ The home page into a release folder of alpha
open alpha 127.0.0.1 demo demo ${PORT[alpha]}
open gamma 127.0.0.1 demo demo ${PORT[gamma]}
lcd $DEMO/www
mkdir alpha release
cd alpha release
put alpha index.html
rename alpha index.html home.html
close alpha
EOT

# The quick connect of the browser starts filled in for alpha.
awk -v port="${PORT[alpha]}" '{ print } /^\[FTP\]$/ { print "QuickServer=127.0.0.1";
  print "QuickLogin=demo"; print "QuickPasswd=demo"; print "QuickPort=" port }' \
  "$SETTINGS" > "$SETTINGS.new" && mv "$SETTINGS.new" "$SETTINGS"

echo "== zelto, the scheduler sending the link \"demo\" and running publish.cmd at $AT"
"$ZELTO" > "$DEMO/run/zelto.out" 2>&1 &
ZELTO_PID=$!
trap 'kill "$ZELTO_PID" $WM_PID 2>/dev/null || true; wait "$ZELTO_PID" 2>/dev/null || true; stop_servers' EXIT

# uploads_done N: waits (30 s at most) until the servers hold N files.
uploads_done() {
  for _ in $(seq 300); do
    [ "$(find "$DEMO/servers" -type f | wc -l)" -ge "$1" ] && return 0
    sleep 0.1
  done
  return 1
}

sleep 3
# With the window tools the link is chosen on the profile bar (Alt+K, then the first link), so
# that the screen shows its sites and files; without them the panes stay empty.
if [ -n "$TOOLS" ]; then
  # The keys go to the window that has the input focus: activated through the window manager,
  # or focused directly without one.
  MAIN_WINDOW=$(xdotool search --onlyvisible --name "^Zelto" | head -n 1)
  xdotool windowactivate --sync "$MAIN_WINDOW" 2>/dev/null \
    || xdotool windowfocus --sync "$MAIN_WINDOW" || true
  xdotool key alt+k Down || true
  sleep 1
fi
window_shot main-window
# One file on each good server: the transfers are under way.
uploads_done 2 || echo "   the link did not start: no transfer windows to show" >&2
# The script's window waits beside the screen until its own shot, so that it hides no transfer
# window (minimised, it would take its main window along).
SCRIPT_WINDOW=
if [ -n "$TOOLS" ]; then
  SCRIPT_WINDOW=$(xdotool search --sync --onlyvisible --name "^Script " | head -n 1)
  xdotool windowmove --sync "$SCRIPT_WINDOW" 2000 0 || true
fi
sleep 0.5
window_shot transfer-windows
# The link's 8 files and the script's one.
uploads_done 9 || echo "   the link did not end in time" >&2
sleep 2
window_shot log-view
if [ -n "$SCRIPT_WINDOW" ]; then
  xdotool windowmove --sync "$SCRIPT_WINDOW" 360 200 || true
  sleep 0.5
  frame_shot script-window "$SCRIPT_WINDOW"
fi
# The Standard FTP screen (Ctrl+1) connected to alpha: a click in the remote folder tree, the
# first pane, gives it the focus, and Ctrl+K opens the quick connect, filled in, which Return
# confirms.
if [ -n "$TOOLS" ]; then
  [ -z "$SCRIPT_WINDOW" ] || xdotool windowmove --sync "$SCRIPT_WINDOW" 2000 0 || true
  xdotool windowactivate --sync "$MAIN_WINDOW" 2>/dev/null \
    || xdotool windowfocus --sync "$MAIN_WINDOW" || true
  xdotool key ctrl+1
  sleep 1
  xdotool mousemove --window "$MAIN_WINDOW" 80 160 click 1 key ctrl+k
  sleep 1
  xdotool key Return
  sleep 2
  window_shot standard-ftp
fi
