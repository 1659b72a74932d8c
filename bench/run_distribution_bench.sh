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
# Needs root (vsftpd chroots its sessions), vsftpd and lftp; BUILD_DIR (default "build") must hold
# the built zelto_bench_distribution. Every transfer is passive (lftp's default too). Zelto's times
# run from the first job's start to the last job's end, all jobs started at once (as lftp's are;
# Send Parallel itself starts them 200 ms apart, shown once as well); lftp's include its start.
set -euo pipefail

BUILD=${1:-build}
RUNS=${2:-3}
BENCH="$BUILD/bench/zelto_bench_distribution"
[ -x "$BENCH" ] || { echo "build $BENCH first" >&2; exit 2; }
command -v lftp >/dev/null || { echo "lftp is missing" >&2; exit 2; }

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

echo "Zelto, 1 and 8 servers, $RUNS runs each"
for _ in $(seq "$RUNS"); do
  for n in 1 8; do
    sync # the last run's files written back first, for every tool alike
    "$BENCH" --fanout "$n" --source "$WORK/site" | tee "$WORK/run.out" | sed 's/^/  /'
    sed -E 's/.*each: ([0-9.]+) s,.*/\1/' "$WORK/run.out" >> "$WORK/ours$n"
  done
done
echo "Zelto, 8 servers, started 200 ms apart as Send Parallel does"
sync
"$BENCH" --fanout 8 --interval 200 --source "$WORK/site" | sed 's/^/  /'

echo "lftp mirror -R, 1 and 8 side by side on 8 servers, $RUNS runs each"
start_servers "$BENCH" 8
mirror() {
  lftp -c "set ftp:passive-mode on; set xfer:clobber on; \
    open -u anonymous,bench ftp://127.0.0.1:$1; mirror -R --no-perms $WORK/site pub/lftp" \
    > /dev/null
}
for _ in $(seq "$RUNS"); do
  for n in 1 8; do
    for i in $(seq 0 7); do rm -rf "${ROOTS[$i]}/pub/lftp"; done
    sync
    start=$(now)
    pids=()
    for i in $(seq 0 $((n - 1))); do mirror "${PORTS[$i]}" & pids+=($!); done
    for pid in "${pids[@]}"; do wait "$pid"; done
    end=$(now)
    for i in $(seq 0 $((n - 1))); do
      [ "$(find "${ROOTS[$i]}/pub/lftp" -type f | wc -l)" = 200 ] \
        || { echo "lftp left files out" >&2; exit 1; }
    done
    wall=$(awk -v a="$start" -v b="$end" 'BEGIN {printf "%.2f", b - a}')
    echo "  lftp, $n servers: $wall s"
    echo "$wall" >> "$WORK/lftp$n"
  done
done
stop_servers

echo "100 parallel sites on 4 servers, 10 files of 1 MiB each"
sync
"$BENCH" --sites 100 --servers 4 --source "$WORK/small" | tee "$WORK/sites.out" | sed 's/^/  /'

echo
echo "median of $RUNS runs (seconds)"
echo "  file set, 20,000 entries:          $(median fileset)"
echo "  Zelto, 200 x 1 MiB to 1 server:    $(median ours1)"
echo "  Zelto, 200 x 1 MiB to 8 servers:   $(median ours8)"
echo "  lftp,  200 x 1 MiB to 1 server:    $(median lftp1)"
echo "  lftp,  8 runs side by side:        $(median lftp8)"
echo "  Zelto 8 / Zelto 1:                 $(ratio "$(median ours8)" "$(median ours1)")"
echo "  Zelto 8 / lftp 8:                  $(ratio "$(median ours8)" "$(median lftp8)")"
echo "  lftp 8 / lftp 1:                   $(ratio "$(median lftp8)" "$(median lftp1)")"
