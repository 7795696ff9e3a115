#!/usr/bin/env bash
# Serves files with nginx on 127.0.0.1 until Ctrl-C, printing each file's URL:
#   scripts/serve.sh FILE...
# The same server the tests use (tests/filestream/http/testhttpd.py), in a
# temporary folder that goes when it stops.
set -eu
[ $# -gt 0 ] || { echo "usage: scripts/serve.sh FILE..." >&2; exit 1; }
cd "$(dirname "$0")/.."
scripts/setup.sh
dir=$(mktemp -d)
mkdir -p "$dir/www"
for file in "$@"; do
  ln -s "$(readlink -f "$file")" "$dir/www/$(basename "$file")"
done
python3 tests/filestream/http/testhttpd.py --dir "$dir" &
stop() { touch "$dir/stop"; wait; rm -rf "$dir"; }
trap stop EXIT INT TERM
for _ in $(seq 300); do [ -f "$dir/ports" ] || [ -f "$dir/failed" ] && break; sleep 0.1; done
[ -f "$dir/ports" ] || { cat "$dir/failed" "$dir/logs/error.log" 2>/dev/null >&2; exit 2; }
port=$(cut -d' ' -f1 "$dir/ports")
for file in "$@"; do echo "http://127.0.0.1:$port/$(basename "$file")"; done
echo "serving; Ctrl-C stops" >&2
wait
