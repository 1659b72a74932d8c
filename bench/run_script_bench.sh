#!/usr/bin/env bash
# Times a command script that puts 1,000 small files over one connection, run by the real
# program (zelto -b), against lftp's mput of the same files to the same local vsftpd.
#
#   bench/run_script_bench.sh [BUILD_DIR] [RUNS] [FILES] [SIZE]
#
# Needs root (vsftpd chroots its sessions), vsftpd, lftp and GNU time; BUILD_DIR (default
# "build") must hold the built zelto and zelto_bench_transfer (which serves vsftpd). Both tools
# use passive mode, one control connection and one login; wall times include process start,
# login and logout. The files and the server's folder live in memory (BENCH_TMP, default
# /dev/shm), and every run starts with an empty upload folder.
set -euo pipefail

BUILD=${1:-build}
RUNS=${2:-5}
FILES=${3:-1000}
SIZE=${4:-1024}
ZELTO="$BUILD/zelto"
SERVE="$BUILD/bench/zelto_bench_transfer"
for program in "$ZELTO" "$SERVE"; do
  [ -x "$program" ] || { echo "build $program first" >&2; exit 2; }
done
for tool in lftp /usr/bin/time; do
  command -v "$tool" >/dev/null || { echo "$tool is missing" >&2; exit 2; }
done

. "$(dirname "$0")/bench_lib.sh"
bench_workdir

mkdir -p "$WORK/files"
for i in $(seq -w 1 "$FILES"); do
  head -c "$SIZE" /dev/urandom > "$WORK/files/f$i.dat"
done
echo "$FILES files of $SIZE bytes in $WORK/files"

start_servers "$SERVE"
echo "vsftpd on port $PORT"

# Zelto's own settings and data (the log file) for this bench only: passive, no proxy.
export XDG_CONFIG_HOME="$WORK/config" XDG_DATA_HOME="$WORK/data"
mkdir -p "$XDG_CONFIG_HOME/Pellmoor"
printf '[FTP]\nPassive=YES\nAccessType=DirectAccess\n' > "$XDG_CONFIG_HOME/Pellmoor/Zelto.conf"
{
  echo "open srv 127.0.0.1 anonymous bench $PORT"
  echo "cd srv pub"
  for file in "$WORK"/files/*.dat; do echo "put srv $file"; done
  echo "close srv"
} > "$WORK/put.cmd"

# run NAME COMMAND...: one timed run into an empty upload folder; appends "wall_s cpu_s" to
# $WORK/NAME and checks that every file arrived whole.
run() {
  local name=$1; shift
  rm -f "$ROOT"/pub/*
  /usr/bin/time -f "%e %U %S" -o "$WORK/time.out" "$@" > "$WORK/out.txt" 2> "$WORK/err.out" \
    || { echo "$name failed:" >&2; tail -20 "$WORK/out.txt" "$WORK/err.out" >&2; exit 1; }
  awk '{printf "%s %.2f\n", $1, $2 + $3}' "$WORK/time.out" >> "$WORK/$name"
  diff -rq "$WORK/files" "$ROOT/pub" > /dev/null \
    || { echo "$name: the uploaded files differ" >&2; exit 1; }
}

TOOLS=(zelto lftp)
for i in $(seq "$RUNS"); do
  echo "run $i of $RUNS"
  for k in 0 1; do
    case ${TOOLS[$(((i + k) % 2))]} in
      zelto) run zelto "$ZELTO" --headless -b "$WORK/put.cmd" ;;
      lftp) run lftp lftp -c "set ftp:passive-mode on; set xfer:clobber on;
          open -u anonymous,bench ftp://127.0.0.1:$PORT; cd pub; mput $WORK/files/*.dat" ;;
    esac
  done
done

echo
echo "put of $FILES files of $SIZE bytes over one connection, medians of $RUNS runs"
printf "%-6s %8s %8s\n" "" "wall" "CPU"
for tool in zelto lftp; do
  printf "%-6s %8s %8s\n" "$tool" "$(median $tool 1)" "$(median $tool 2)"
done
awk -v a="$(median zelto 1)" -v b="$(median lftp 1)" 'BEGIN {printf "zelto/lftp wall %.2f\n", a / b}'
