#!/usr/bin/env bash
# Times the distribution against local vsftpd servers:
#   - the file set of 20,000 list entries;
#   - 200 files of 1 MiB to 8 servers in parallel, against the same files to one server, and
#     against 8 "lftp -c 'mirror -R ...'" started side by side on the same 8 servers;
#   - 100 parallel sites (on 4 servers, vsftpd allows 50 sessions per address): peak memory, and
#     the threads left once every job has ended.
#
#   bench/run_distribution_bench.sh [BUILD_DIR] [RUNS]
#
# Needs root (vsftpd chroots its sessions), vsftpd, lftp and GNU time; BUILD_DIR (default "build")
# must hold the built zelto_bench_distribution. Every transfer is passive (lftp's default too).
# Zelto's times run from the first job's start to the last job's end, all jobs started at once (as
# lftp's are; Send Parallel itself starts them 200 ms apart, shown once as well); lftp's include
# its start. The servers' folders are in memory (BENCH_TMP, default /dev/shm) for both tools, as
# the files to send are: a disk under one tool's servers only would measure the disk. The client
# CPU is the user and system time of Zelto's process during the run, and of the lftp processes.
set -euo pipefail

BUILD=${1:-build}
RUNS=${2:-3}
BENCH="$BUILD/bench/zelto_bench_distribution"
[ -x "$BENCH" ] || { echo "build $BENCH first" >&2; exit 2; }
for tool in lftp /usr/bin/time; do
  command -v "$tool" >/dev/null || { echo "$tool is missing" >&2; exit 2; }
done

. "$(dirname "$0")/bench_lib.sh"
bench_workdir
now() { date +%s.%N; }

echo "making 200 files of 1 MiB"
mkdir -p "$WORK/site" "$WORK/small"
for i in $(seq -w 1 200); do head -c 1048576 /dev/urandom > "$WORK/site/f$i.bin"; done
cp "$WORK"/site/f01*.bin "$WORK/small/"

echo "file set of 20,000 entries, $RUNS runs"
for _ in $(seq "$RUNS"); do
  "$BENCH" --fileset 20000 | tee -a "$WORK/fileset.out" | sed 's/^/  /'
done
sed -E 's/.*: ([0-9.]+) s$/\1/' "$WORK/fileset.out" > "$WORK/fileset"

# lftp's servers stay up (idle) while Zelto's runs start servers of their own.
start_servers "$BENCH" 8
mirror() {
  /usr/bin/time -f "%U %S" -o "$WORK/lftp.cpu$1" lftp -c "set ftp:passive-mode on; \
    set xfer:clobber on; open -u anonymous,bench ftp://127.0.0.1:$1; \
    mirror -R --no-perms $WORK/site pub/lftp" > /dev/null
}
ours() {
  TMPDIR="$MEM" "$BENCH" --fanout "$1" --source "$WORK/site" | tee "$WORK/run.out" | sed 's/^/  /'
  sed -E 's/.*each: ([0-9.]+) s, client CPU ([0-9.]+) s.*/\1 \2/' "$WORK/run.out" >> "$WORK/ours$1"
}
theirs() {
  local n=$1 start end wall cpu pids=()
  for i in $(seq 0 7); do rm -rf "${ROOTS[$i]}/pub/lftp"; done
  sync
  start=$(now)
  for i in $(seq 0 $((n - 1))); do mirror "${PORTS[$i]}" & pids+=($!); done
  for pid in "${pids[@]}"; do wait "$pid"; done
  end=$(now)
  for i in $(seq 0 $((n - 1))); do
    [ "$(find "${ROOTS[$i]}/pub/lftp" -type f | wc -l)" = 200 ] \
      || { echo "lftp left files out" >&2; exit 1; }
  done
  wall=$(awk -v a="$start" -v b="$end" 'BEGIN {printf "%.2f", b - a}')
  cpu=$(for i in $(seq 0 $((n - 1))); do cat "$WORK/lftp.cpu${PORTS[$i]}"; done \
    | awk '{s += $1 + $2} END {printf "%.2f", s}')
  echo "  lftp mirror -R, $n servers: $wall s, client CPU $cpu s"
  echo "$wall $cpu" >> "$WORK/lftp$n"
}

# The tools take turns, the first one changing from run to run, so that a change in the
# machine's load falls on both.
echo "Zelto and lftp, 1 and 8 servers, $RUNS runs each"
for run in $(seq "$RUNS"); do
  for n in 1 8; do
    if [ $((run % 2)) = 1 ]; then
      sync; ours "$n"; theirs "$n"
    else
      theirs "$n"; sync; ours "$n"
    fi
  done
done
stop_servers
echo "Zelto, 8 servers, started 200 ms apart as Send Parallel does"
sync
TMPDIR="$MEM" "$BENCH" --fanout 8 --interval 200 --source "$WORK/site" | sed 's/^/  /'

echo "100 parallel sites on 4 servers, 10 files of 1 MiB each"
sync
TMPDIR="$MEM" "$BENCH" --sites 100 --servers 4 --source "$WORK/small" | tee "$WORK/sites.out" \
  | sed 's/^/  /'

echo
echo "median of $RUNS runs (seconds; client CPU = user + system of the client process(es))"
echo "  file set, 20,000 entries:          $(median fileset)"
echo "  Zelto, 200 x 1 MiB to 1 server:    $(median ours1), client CPU $(median ours1 2)"
echo "  Zelto, 200 x 1 MiB to 8 servers:   $(median ours8), client CPU $(median ours8 2)"
echo "  lftp,  200 x 1 MiB to 1 server:    $(median lftp1), client CPU $(median lftp1 2)"
echo "  lftp,  8 runs side by side:        $(median lftp8), client CPU $(median lftp8 2)"
echo "  Zelto 8 / Zelto 1:                 $(ratio "$(median ours8)" "$(median ours1)")"
echo "  Zelto 8 / lftp 8:                  $(ratio "$(median ours8)" "$(median lftp8)")"
echo "  lftp 8 / lftp 1:                   $(ratio "$(median lftp8)" "$(median lftp1)")"
echo "  load average at the end:           $(cut -d' ' -f1-3 /proc/loadavg)"
