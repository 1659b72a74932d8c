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
#   run-summary.png       the report at the end of the link: a row per site, the refused one failed
#   script-window.png     the progress window of a script that the scheduler ran beside the link,
#                         at its end: the count of its steps, and Close
#   statistics-window.png the transfer statistics after the run
#   transfers-dock.png    the Transfers dock (View > Transfers) with eight sites at work
#   unattended-link.png   "zelto -l demo" on a desktop: the link's transfer windows alone
#   unattended-script.png "zelto -b publish.cmd" on a desktop: the script's progress window
#   main-window-scaled.png the main window at a display scale of 1.75
#   main-window-dark.png  the main window in a dark palette (a dark KDE colour scheme)
#   options-sheet-dark.png the options sheet in that palette
#   profile-screen.png    the site-profile screen, from the FTP menu
#   link-dialog.png       the link dialog, from the FTP menu
#   file-list-screen.png  the file-list screen opened from the FTP menu, the list "website" chosen
#   queue-window.png      the queue window with the files that the refused site did not take
#   scheduler-window.png  the scheduler's configurator with the two entries of the run
#   options-sheet.png     the "System Config" sheet on its System page
#   standard-ftp.png      the Standard FTP screen connected to a site by its quick connect
#   remote-ftp.png        the Remote FTP screen connected to two sites, copying a file between them
#
# Needs xvfb-run (xvfb, xauth) and the demo's python3 with pyftpdlib. Optional: xdotool and
# x11-utils (to drive the program with its keys and to shoot single windows; without them only the
# first four shots are taken) and openbox (title bars). Settings and data live under
# /tmp/zelto-demo (DEMO_HOME), never in your own; a short neutral path, since the pictures show it.
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

DEMO_HOME=${DEMO_HOME:-/tmp/zelto-demo}
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
  # Without a window id xwininfo waits for a click on the screen, which never comes here.
  [ -n "$2" ] || { echo "   no window for $1" >&2; return 0; }
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

# The link "eight": the demo's three sites and five more profiles of the two servers that accept
# the login, each in a folder of its own, for the Transfers dock.
EIGHT=(alpha beta gamma)
for name in eu-north eu-west us-east asia-south backup; do
  server=alpha
  case $name in eu-west|asia-south) server=beta ;; esac
  mkdir -p "$DEMO/servers/$server/$name"
  sed -e "s/^Description=.*/Description=$name on $server/" -e "s|^Remote Path=.*|Remote Path=/$name|" \
    "$DATA/Profiles/$server.ini" > "$DATA/Profiles/$name.ini"
  EIGHT+=("$name")
done
{
  echo "[LinkItems]"
  echo "Sites=${#EIGHT[@]}"
  echo "Files=$DATA/Files/website/flist.ini"
  for i in "${!EIGHT[@]}"; do
    printf '[SITE%d]\nSITE=%s\n' "$((i + 1))" "$DATA/Profiles/${EIGHT[$i]}.ini"
  done
} > "$DATA/Links/eight.ini"

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
Overwrite=YES

[SCHEDULE]
ResendFail=1
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
  MAIN_WINDOW=$(timeout 20 xdotool search --sync --onlyvisible --name "^Zelto" | head -n 1) || true
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
  SCRIPT_WINDOW=$(timeout 20 xdotool search --sync --onlyvisible --name "^Script " | head -n 1) || true
  xdotool windowmove --sync "$SCRIPT_WINDOW" 2000 0 || true
fi
sleep 0.5
window_shot transfer-windows
# The link's 8 files and the script's one.
uploads_done 9 || echo "   the link did not end in time" >&2
sleep 2
# The link's report, a row per site, opens over the frame at its end: shot, then closed by Escape.
if [ -n "$TOOLS" ] && REPORT=$(timeout 20 xdotool search --sync --onlyvisible --name "^Link run: " | head -n 1); then
  sleep 0.5
  frame_shot run-summary "$REPORT"
  xdotool windowactivate --sync "$REPORT" 2>/dev/null || xdotool windowfocus --sync "$REPORT" || true
  xdotool key Escape || true
  sleep 0.3
fi
window_shot log-view
if [ -n "$SCRIPT_WINDOW" ]; then
  xdotool windowmove --sync "$SCRIPT_WINDOW" 360 200 || true
  sleep 0.5
  frame_shot script-window "$SCRIPT_WINDOW"
  xdotool windowactivate --sync "$SCRIPT_WINDOW" 2>/dev/null || true
  xdotool key alt+c || true
fi
[ -n "$TOOLS" ] || exit 0

# focus_main: the keys that follow go to the main window.
focus_main() {
  xdotool windowactivate --sync "$MAIN_WINDOW" 2>/dev/null \
    || xdotool windowfocus --sync "$MAIN_WINDOW" || true
  sleep 0.3
}
# find_window PATTERN: the first visible window whose title matches, waiting for it (10 s).
find_window() {
  local id
  for _ in $(seq 100); do
    id=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1) || true
    [ -n "$id" ] && { echo "$id"; return 0; }
    sleep 0.1
  done
  return 1
}

# FTP > Transfer Statistics, after the run, then Close.
focus_main
xdotool key alt+t t
if STATS=$(find_window "^Transfer Statistics"); then
  sleep 1.2
  frame_shot statistics-window "$STATS"
  xdotool windowactivate --sync "$STATS" 2>/dev/null || xdotool windowfocus --sync "$STATS" || true
  xdotool key Escape || true
fi

# The file-list screen from the FTP menu (Alt+T, then L); its tree has the focus, and Down chooses
# the first list, "website".
if [ -n "$TOOLS" ]; then
  xdotool windowactivate --sync "$MAIN_WINDOW" 2>/dev/null \
    || xdotool windowfocus --sync "$MAIN_WINDOW" || true
  xdotool key alt+t l || true
  FILES_WINDOW=$(timeout 20 xdotool search --sync --onlyvisible --name "^List of Files Profiles" | head -n 1) || true
  xdotool windowactivate --sync "$FILES_WINDOW" 2>/dev/null \
    || xdotool windowfocus --sync "$FILES_WINDOW" || true
  xdotool key Down || true
  sleep 1
  frame_shot file-list-screen "$FILES_WINDOW"
  xdotool windowclose "$FILES_WINDOW" 2>/dev/null || xdotool key --window "$FILES_WINDOW" Escape || true
# The profile screen and the link dialog, each opened from the FTP menu by its access key.
  for pair in "o:^FTP Profiles:profile-screen" "k:^Profile / File Links:link-dialog"; do
    IFS=: read -r key title name <<<"$pair"
    xdotool windowactivate --sync "$MAIN_WINDOW" 2>/dev/null \
      || xdotool windowfocus --sync "$MAIN_WINDOW" || true
    xdotool key alt+t "$key" || true
    WINDOW=$(timeout 10 xdotool search --sync --onlyvisible --name "$title" | head -n 1) || true
    [ -n "$WINDOW" ] || { echo "   no window \"$title\" to show" >&2; continue; }
    # The link dialog shows its first link (Down in the Link box): its sites and files.
    if [ "$name" = link-dialog ]; then xdotool key Down || true; fi
    sleep 0.5
    frame_shot "$name" "$WINDOW"
    xdotool windowclose "$WINDOW" 2>/dev/null || xdotool key --window "$WINDOW" Escape || true
  done
fi
# dialog_shot NAME TITLE KEYS...: the modal window that the keys open from the main window, shot
# and closed with Escape.
dialog_shot() {
  local name=$1 title=$2 dialog
  shift 2
  xdotool windowactivate --sync "$MAIN_WINDOW" 2>/dev/null \
    || xdotool windowfocus --sync "$MAIN_WINDOW" || true
  xdotool key "$@" || true
  dialog=$(timeout 20 xdotool search --sync --onlyvisible --name "^$title\$" | head -n 1) || true
  sleep 1
  frame_shot "$name" "$dialog"
  # Sent to the window found, or else to the focus, which a modal window keeps.
  xdotool key --window "$dialog" Escape 2>/dev/null || xdotool key Escape || true
  sleep 0.5
}
# Files that failed on an earlier day wait in the queue, written once the program has started
# (without StartQueueProg it empties the queue at its start; and all three demo servers are
# 127.0.0.1, so the run's own successes take its failures out of the queue again).
{
  echo "[QUEUE]"
  echo "NumQueues=3"
  n=0
  for file in index.html about.html logo.png; do
    n=$((n + 1))
    printf '[QUEUE%d]\nNumTimes=%d\nLocalName=%s\nRemoteName=%s\nLocDirFile=%s\n' \
      "$n" "$n" "$file" "$file" "$DEMO/www"
    printf 'RemDirFile=/\nReason=%s\nSource=Local\nDestination=files.example.net\n' \
      "Could not connect to the server"
    printf 'FtpMethod=ZELTO_PUT\nFileSize=1024\nPort=21\nStatus=%d\n' "$((n == 3))"
  done
} > "$DATA/zeltoQue.ini"

if [ -n "$TOOLS" ]; then
  dialog_shot queue-window Queue alt+t q
  dialog_shot scheduler-window "Zelto Scheduler" alt+o s c
  # The options sheet (Options > Configuration...), on its System page.
  xdotool windowactivate --sync "$MAIN_WINDOW" 2>/dev/null \
    || xdotool windowfocus --sync "$MAIN_WINDOW" || true
  xdotool key alt+o c || true
  OPTIONS_WINDOW=$(timeout 20 xdotool search --sync --onlyvisible --name "^System Config" | head -n 1) || true
  xdotool key ctrl+Tab ctrl+Tab || true
  sleep 0.5
  frame_shot options-sheet "$OPTIONS_WINDOW"
  xdotool key --window "$OPTIONS_WINDOW" Escape || true
fi

# The Standard FTP screen (Ctrl+1) connected to alpha: a click in the remote folder tree, the
# first pane, gives it the focus, and Ctrl+K opens the quick connect, filled in, which Return
# confirms.
if [ -n "$TOOLS" ]; then
  xdotool windowactivate --sync "$MAIN_WINDOW" 2>/dev/null \
    || xdotool windowfocus --sync "$MAIN_WINDOW" || true
  xdotool key ctrl+1
  sleep 1
  xdotool mousemove --window "$MAIN_WINDOW" 80 160 click 1 key ctrl+k
  sleep 1
  xdotool key Return
  sleep 2
  window_shot standard-ftp

  # The Remote FTP screen (Ctrl+2): the first side connected to alpha as above, the second to beta
  # (its port typed into the quick connect); in alpha's list the folder "release" of the script is
  # opened (typed, then Return) and its last file copied to beta with Ctrl+Shift+C. Beta holds the
  # upload for a moment, so the copy's window is at work in the shot.
  xdotool key ctrl+2
  sleep 1
  xdotool mousemove --window "$MAIN_WINDOW" 60 210 click 1 key ctrl+k
  sleep 1
  xdotool key Return
  sleep 2
  xdotool mousemove --window "$MAIN_WINDOW" 630 210 click 1 key ctrl+k
  sleep 1
  # Host, user and password are alpha's already; Tab goes on to the port. (A key command takes
  # every word after it as a key, so the typing is a command of its own.)
  xdotool key Tab Tab Tab ctrl+a
  xdotool type "${PORT[beta]}"
  xdotool key Return
  sleep 2
  xdotool mousemove --window "$MAIN_WINDOW" 380 290 click 1 type release
  xdotool key Return
  sleep 1.5
  xdotool key End ctrl+shift+c
  sleep 0.8
  window_shot remote-ftp
  sleep 2
  xdotool key ctrl+3
  sleep 0.5
fi

# The link "eight" on the profile bar, View > Transfers, and Send Parallel (Ctrl+Return): eight
# transfer windows, moved beside the screen (minimised, they would take the main window along)
# so that the dock shows them all at work.
focus_main
xdotool key alt+k Down
sleep 0.5
xdotool key alt+v r ctrl+Return
BEFORE=$(find "$DEMO/servers" -type f | wc -l)
uploads_done $((BEFORE + 4)) || echo "   the eight sites did not start" >&2
for id in $(xdotool search --onlyvisible --name "^FTP Put to" 2>/dev/null); do
  xdotool windowmove "$id" 2000 0 2>/dev/null || true
done
sleep 0.6
window_shot transfers-dock
# Until the last transfer window has closed (30 s at most).
for _ in $(seq 300); do
  xdotool search --name "^FTP Put to" >/dev/null 2>&1 || break
  sleep 0.1
done
# Then the send's report; Escape closes it.
if REPORT=$(find_window "^Send Parallel$"); then
  xdotool windowactivate --sync "$REPORT" 2>/dev/null || xdotool windowfocus --sync "$REPORT" || true
  xdotool key Escape || true
fi

# The main program ends; the unattended runs show their own windows on the desktop.
kill "$ZELTO_PID" 2>/dev/null || true
wait "$ZELTO_PID" 2>/dev/null || true
echo "== zelto -l demo, on a desktop"
"$ZELTO" -l demo > "$DEMO/run/link.out" 2>&1 &
LINK_PID=$!
if find_window "^FTP Put to" >/dev/null; then
  sleep 1.5
  shot unattended-link
fi
wait "$LINK_PID" && status=0 || status=$?
echo "   ended with status $status"
echo "== zelto -b publish.cmd, on a desktop"
"$ZELTO" -b "$DATA/publish.cmd" > "$DEMO/run/script.out" 2>&1 &
SCRIPT_PID=$!
if SCRIPT_WINDOW=$(find_window "^Script "); then
  sleep 0.5
  frame_shot unattended-script "$SCRIPT_WINDOW"
fi
wait "$SCRIPT_PID" && status=0 || status=$?
echo "   ended with status $status"

# The main window at a display scale of 1.75, on the same screen.
echo "== zelto at a scale of 1.75"
QT_SCALE_FACTOR=1.75 "$ZELTO" > "$DEMO/run/scaled.out" 2>&1 &
ZELTO_PID=$!
if MAIN_WINDOW=$(find_window "^Zelto"); then
  sleep 1.5
  window_shot main-window-scaled
fi

# The main window in a dark palette: the desktop's colours, here a dark KDE scheme (Qt reads the
# scheme of a KDE session from kdeglobals under XDG_CONFIG_HOME).
kill "$ZELTO_PID" 2>/dev/null || true
wait "$ZELTO_PID" 2>/dev/null || true
echo "== zelto in a dark palette"
cat > "$XDG_CONFIG_HOME/kdeglobals" <<'EOT'
[Colors:Window]
BackgroundNormal=49,54,59
ForegroundNormal=239,240,241
ForegroundInactive=189,195,199
[Colors:View]
BackgroundNormal=35,38,41
BackgroundAlternate=43,46,49
ForegroundNormal=239,240,241
ForegroundInactive=189,195,199
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=239,240,241
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=255,255,255
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=239,240,241
EOT
XDG_CURRENT_DESKTOP=KDE KDE_SESSION_VERSION=5 KDE_FULL_SESSION=true "$ZELTO" \
  > "$DEMO/run/dark.out" 2>&1 &
ZELTO_PID=$!
if MAIN_WINDOW=$(find_window "^Zelto"); then
  sleep 1.5
  window_shot main-window-dark
  if [ -n "$TOOLS" ]; then
    dialog_shot options-sheet-dark "System Config" alt+o c
  fi
fi
