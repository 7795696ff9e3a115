#!/usr/bin/env bash
# Runs a Windows program under Wine in a private prefix that lives in the
# build tree. The prefix is made once: null graphics driver so hidden windows
# and COM apartments work headless, and an empty AeDebug debugger so a crash
# exits at once (code 5) instead of hanging or passing.
#
#   wine-run.sh --prefix DIR --start-server | --stop-server | PROGRAM [ARGS...]
set -u
if [ "${1:-}" != "--prefix" ] || [ -z "${2:-}" ]; then
  echo "usage: wine-run.sh --prefix DIR (--start-server | --stop-server | PROGRAM [ARGS...])" >&2
  exit 2
fi
export WINEPREFIX="$2"
shift 2
export WINEARCH=win64
export WINEDEBUG=${TW_WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
WINE=$(command -v wine64 || echo /usr/lib/wine/wine64)
[ -x "$WINE" ] || WINE=$(command -v wine)
WINESERVER=$(command -v wineserver || echo /usr/lib/wine/wineserver)
export WINESERVER

make_prefix() {
  mkdir -p "$WINEPREFIX"
  "$WINE" wineboot -i >/dev/null 2>&1
  "$WINE" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
  "$WINE" reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /d '' /f >/dev/null 2>&1
  "$WINE" reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Auto /d 1 /f >/dev/null 2>&1
  "$WINESERVER" -w
  # The shell folders link to the Linux home; keep tests inside the prefix.
  local users="$WINEPREFIX/drive_c/users"
  for link in "$users"/*/*; do
    if [ -L "$link" ]; then rm -f "$link"; mkdir -p "$link"; fi
  done
  touch "$WINEPREFIX/.tw-ready"
}

if [ ! -f "$WINEPREFIX/.tw-ready" ]; then
  mkdir -p "$(dirname "$WINEPREFIX")"
  exec 9>"$WINEPREFIX.lock"
  flock 9
  [ -f "$WINEPREFIX/.tw-ready" ] || make_prefix
  flock -u 9
  exec 9>&-
fi

case "${1:-}" in
  --start-server)
    "$WINESERVER" -p </dev/null >/dev/null 2>&1
    "$WINE" cmd /c exit </dev/null >/dev/null 2>&1
    exit 0 ;;
  --stop-server)
    "$WINESERVER" -k </dev/null >/dev/null 2>&1
    "$WINESERVER" -w </dev/null >/dev/null 2>&1
    exit 0 ;;
  "")
    echo "wine-run.sh: no program given" >&2; exit 2 ;;
esac
# Whatever the program starts (cmd.exe and its conhost, the desktop's
# explorer.exe) is forked from it and inherits its Unix output. One that
# outlives the program would keep the caller's pipe open and CTest waiting
# until its timeout. So into a pipe the program writes into files, and only
# this script writes to the caller. Output into files goes live, for callers
# that watch it while the program runs (a host saying it is ready).
if [ ! -p /dev/stdout ] && [ ! -p /dev/stderr ]; then
  exec "$WINE" "$@"
fi
out=$(mktemp "${TMPDIR:-/tmp}/wine-run.out.XXXXXX")
err=$(mktemp "${TMPDIR:-/tmp}/wine-run.err.XXXXXX")
trap 'rm -f "$out" "$err"' EXIT
"$WINE" "$@" >"$out" 2>"$err"
status=$?
cat "$out"
cat "$err" >&2
exit $status
