# The demo's world (sourced by demo.sh and screenshots.sh): three FTP servers on this machine (one
# of them refuses every login, to show how a failure is reported), a small web site in nested
# folders, three site profiles, the file list "website" and the link "demo" joining them.
#
# Before sourcing, set ROOT (the source tree) and BUILD (the build folder), and DEMO_HOME if the
# demo should live elsewhere. demo_setup makes DEMO (DEMO_HOME, or $BUILD/demo-home) afresh,
# exports XDG_CONFIG_HOME and XDG_DATA_HOME into it, and sets DATA (the data folder), SETTINGS
# (the settings file), NAMES and PORT (each server's port); the servers stop when the sourcing
# script ends, also when it is interrupted.

SERVER_SCRIPT="$ROOT/tests/support/ftp_server.py"
PYTHON=/usr/bin/python3
[ -x "$PYTHON" ] || PYTHON=python3
ZELTO="$BUILD/zelto"
DEMO="${DEMO_HOME:-$BUILD/demo-home}"
NAMES=(alpha beta gamma)
REFUSING=gamma
PIDS=()
declare -A PORT

stop_servers() {
  # Closing their standard input ends them; the signal is for a server that does not listen.
  for fd in 3 4 5; do eval "exec $fd>&-" 2>/dev/null || true; done
  for pid in "${PIDS[@]}"; do kill "$pid" 2>/dev/null || true; done
  for pid in "${PIDS[@]}"; do wait "$pid" 2>/dev/null || true; done
}

# demo_faults NAME JSON: the faults server NAME applies from its next command on.
demo_faults() {
  echo "$2" > "$DEMO/run/$1.faults.json.new"
  mv "$DEMO/run/$1.faults.json.new" "$DEMO/run/$1.faults.json"
}

demo_setup() {
  [ -x "$ZELTO" ] || { echo "build $ZELTO first (make build)" >&2; exit 2; }
  trap stop_servers EXIT
  trap 'exit 130' INT TERM

  # A fresh demo: the last run's servers, data and settings go.
  rm -rf "$DEMO"
  mkdir -p "$DEMO/config/Pellmoor" "$DEMO/data/Pellmoor/Zelto"/{Profiles,Files/website,Links} \
    "$DEMO/run"
  export XDG_CONFIG_HOME="$DEMO/config" XDG_DATA_HOME="$DEMO/data"
  DATA="$DEMO/data/Pellmoor/Zelto"
  SETTINGS="$DEMO/config/Pellmoor/Zelto.conf"

  echo "== Starting three FTP servers on 127.0.0.1 ($REFUSING refuses every login)"
  local fd=3 name faults user
  for name in "${NAMES[@]}"; do
    mkdir -p "$DEMO/servers/$name"
    faults='{}'
    [ "$name" = "$REFUSING" ] && faults='{"refuse_login": ["*"]}'
    echo "$faults" > "$DEMO/run/$name.faults.json"
    # The user both as "user" and as a "users" list: the test server has read either form.
    user="{\"name\": \"demo\", \"password\": \"demo\", \"home\": \"$DEMO/servers/$name\"}"
    cat > "$DEMO/run/$name.json" <<EOT
{"user": $user, "users": [$user], "faults_file": "$DEMO/run/$name.faults.json"}
EOT
    mkfifo "$DEMO/run/$name.in"
    "$PYTHON" "$SERVER_SCRIPT" --config "$DEMO/run/$name.json" \
      --command-log "$DEMO/run/$name.commands" \
      < "$DEMO/run/$name.in" > "$DEMO/run/$name.port" 2> "$DEMO/run/$name.err" &
    PIDS+=($!)
    eval "exec $fd> \"$DEMO/run/$name.in\""
    fd=$((fd + 1))
  done
  for name in "${NAMES[@]}"; do
    for _ in $(seq 100); do
      grep -q '^PORT ' "$DEMO/run/$name.port" 2>/dev/null && break
      sleep 0.1
    done
    read -r _ PORT[$name] < "$DEMO/run/$name.port" || true
    [ -n "${PORT[$name]:-}" ] || { echo "server $name did not start:" >&2; cat "$DEMO/run/$name.err" >&2; exit 1; }
    echo "   $name  port ${PORT[$name]}  serving $DEMO/servers/$name"
  done

  echo "== A small web site in nested folders"
  local site="$DEMO/www"
  mkdir -p "$site/css" "$site/img/icons"
  echo "<html><body><h1>Zelto demo</h1></body></html>" > "$site/index.html"
  echo "body { font-family: sans-serif; }" > "$site/css/site.css"
  head -c 200000 /dev/urandom > "$site/img/photo.jpg"
  head -c 1500 /dev/urandom > "$site/img/icons/home.ico"
  find "$site" -type f | sort | sed "s|^$DEMO/|   |"

  echo "== Settings, three site profiles, the file list \"website\" and the link \"demo\""
  # Direct access (no proxy from the environment), short time-outs, and each file placed under the
  # site's folder in the folders it comes from (FULL_PATH: the whole local folder is re-created).
  cat > "$SETTINGS" <<EOT
[CONFIG]
FTPDirTree=FULL_PATH

[FTP]
AccessType=DirectAccess
ConnectTo=5
RecTo=5
SendTo=5
RecToCtrl=5
SendToCtrl=5
Retry=0
EOT
  for name in "${NAMES[@]}"; do
    cat > "$DATA/Profiles/$name.ini" <<EOT
[Settings]
Host=127.0.0.1
User=demo
Password=demo
Remote Path=
Description=demo server $name
Port=${PORT[$name]}
EOT
  done
  local files=() path i
  while IFS= read -r path; do files+=("$path"); done < <(find "$site" -type f | sort)
  {
    echo "[LIST]"
    echo "NumItems=${#files[@]}"
    i=1
    for path in "${files[@]}"; do
      printf '[FILE%d]\nLocalName=%s\nFolder=%s\nRemoteName=\nSize=%d\n' \
        "$i" "$(basename "$path")" "$(dirname "$path")" "$(stat -c %s "$path")"
      i=$((i + 1))
    done
  } > "$DATA/Files/website/flist.ini"
  {
    echo "[LinkItems]"
    echo "Sites=${#NAMES[@]}"
    echo "Files=$DATA/Files/website/flist.ini"
    i=1
    for name in "${NAMES[@]}"; do
      printf '[SITE%d]\nSITE=%s\n' "$i" "$DATA/Profiles/$name.ini"
      i=$((i + 1))
    done
  } > "$DATA/Links/demo.ini"
  chmod -R go-rwx "$DATA"
  echo "   $DATA"
}
