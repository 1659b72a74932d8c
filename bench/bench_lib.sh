# Shared by the benchmark scripts (sourced): a work folder in memory, the local vsftpd servers that
# a bench program serves, and the statistics of the results.

# Sets MEM (BENCH_TMP, else /dev/shm, else TMPDIR) and WORK, a fresh folder in it. WORK, the folders
# named in EXTRA_DIRS and the servers go at exit.
EXTRA_DIRS=()
bench_workdir() {
  MEM=${BENCH_TMP:-/dev/shm}
  [ -d "$MEM" ] && [ -w "$MEM" ] || MEM=${TMPDIR:-/tmp}
  WORK=$(mktemp -d -p "$MEM")
  SERVER_PID=
  trap bench_cleanup EXIT
}

bench_cleanup() {
  stop_servers
  rm -rf "$WORK" "${EXTRA_DIRS[@]}"
}

# start_servers PROGRAM [COUNT]: PROGRAM --serve [COUNT] runs COUNT vsftpd servers (default 1) until
# its standard input closes. Sets PORTS and ROOTS, and PORT and ROOT to the first server's.
start_servers() {
  local program=$1 count=${2:-1}
  mkfifo "$WORK/server.in"
  if [ $# -ge 2 ]; then
    TMPDIR="$MEM" "$program" --serve "$count" < "$WORK/server.in" > "$WORK/server.out" &
  else
    TMPDIR="$MEM" "$program" --serve < "$WORK/server.in" > "$WORK/server.out" &
  fi
  SERVER_PID=$!
  exec 3> "$WORK/server.in"
  for _ in $(seq 200); do
    [ "$(grep -c '^PORT ' "$WORK/server.out" 2>/dev/null)" = "$count" ] && break
    sleep 0.1
  done
  mapfile -t PORTS < <(awk '/^PORT /{print $2}' "$WORK/server.out")
  mapfile -t ROOTS < <(awk '/^PORT /{print $4}' "$WORK/server.out")
  [ "${#PORTS[@]}" = "$count" ] || { echo "vsftpd did not start" >&2; exit 1; }
  PORT=${PORTS[0]}
  ROOT=${ROOTS[0]}
}

stop_servers() {
  exec 3>&- 2>/dev/null || true
  [ -n "${SERVER_PID:-}" ] && wait "$SERVER_PID" 2>/dev/null || true
  SERVER_PID=
  rm -f "$WORK/server.in"
}

# median FILE [COLUMN]: the median of a column (default 1) of $WORK/FILE.
median() {
  awk -v c="${2:-1}" '{print $c}' "$WORK/$1" | sort -n | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}'
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN {printf "%.2f", a / b}'; }
