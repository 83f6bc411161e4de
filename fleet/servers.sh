# Sourced by the scripts that start servers: a folder `work`, and servers on free ports of the
# loopback interface. Whatever happens, both are gone at the end.

work=$(mktemp -d)
server=""

stop() {
  [ -n "$server" ] || return 0
  kill "$server" 2>/dev/null || true
  wait "$server" 2>/dev/null || true
  server=""
}
clean_up() {
  # The status of what has failed is kept, whatever happens here.
  code=$?
  trap - EXIT
  stop
  rm -rf "$work"
  exit $code
}
trap clean_up EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# start PROGRAM [OPTION...]: starts the server, waits until it is ready, and sets `url`. Another
# program may take the port meanwhile: then another one is tried.
start() {
  for _ in 1 2 3; do
    port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
    url=http://127.0.0.1:$port
    "$@" --web.listen-address="127.0.0.1:$port" --log.level=warn >"$work/server.log" 2>&1 &
    server=$!
    tries=0
    while [ $tries -lt 150 ] && kill -0 "$server" 2>/dev/null; do
      if curl -fs --noproxy '*' -o "$work/ready" "$url/-/ready"; then return 0; fi
      sleep 0.2
      tries=$((tries + 1))
    done
    stop
  done
  cat "$work/server.log" >&2
  echo "$0: $1 does not start" >&2
  exit 1
}

# logged COMMAND...: what it prints is shown if it fails.
logged() {
  "$@" >"$work/log" 2>&1 || {
    cat "$work/log" >&2
    echo "$0: $* failed" >&2
    exit 1
  }
}
