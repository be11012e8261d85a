#!/usr/bin/env bash
# Runs inside a clean system where the packages are installed: what somebody does in the first hour with them. An own
# publisher, an own camera provider and an own port, each the example as it was installed.
set -euo pipefail
cd "$(dirname "$0")"
here=$PWD
work=$(mktemp -d)
started=()
trap 'kill "${started[@]}" 2>/dev/null || true; rm -rf "$work"' EXIT

start() {
  "$@" >"$work/${1##*/}.log" 2>&1 &
  started+=($!)
}
# until_true WHAT COMMAND...
until_true() {
  local what=$1 end=$((SECONDS + 60))
  shift
  until "$@"; do
    if ((SECONDS > end)); then
      echo "not within a minute: $what" >&2
      tail -n 5 "$work"/*.log >&2
      exit 1
    fi
    sleep 0.2
  done
}

echo "a broker, a bus and the service"
port=$((20000 + $$ % 10000)) metrics=$((10000 + $$ % 10000)) room=room-12
export DBUS_SESSION_BUS_ADDRESS=unix:path=$work/bus
start mosquitto -p "$port"
start dbus-daemon --session --nofork --nopidfile --address="$DBUS_SESSION_BUS_ADDRESS"
until_true "the bus" test -S "$work/bus"
export PRB_BUS=mqtt://127.0.0.1:$port/$room PRB_PROVIDER=dbus:session PRB_PROPERTIES=$work/properties PRB_LOG=stderr
start productionrulesd --metrics $metrics

echo "an own publisher and an own camera provider"
examples=/usr/share/doc/productionrules/examples
start $examples/camera-provider.py
start $examples/vision-publisher.py 127.0.0.1 "$port" "$room"
until_true "a scene at the provider" grep -qs '"scene":' "$work/camera-provider.py.log"
until_true "everything there" productionrulesd --check --config /etc/fyn.conf
prb check-feed --bus "$PRB_BUS" --seconds 3 >"$work/feed.log" 2>&1
python3 - $metrics <<'PYTHON'
import sys, urllib.request
text = urllib.request.urlopen(f"http://127.0.0.1:{sys.argv[1]}/metrics").read().decode()
for line in ("productionrules_bus_connected 1", "productionrules_provider_connected 1"):
    assert line + "\n" in text, text
PYTHON

echo "an own port"
mkdir -p examples
ln -sfn /usr/share/doc/libproductionrules-dev/examples/port examples/port
python3 "$here/tests/packaging/port.py" /usr
