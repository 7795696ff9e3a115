# Shared by demo.sh and bench.sh: running the add-in in hostsim on one platform.
#   hostsim_setup windows|linux   sets run, native, hostsim, veerback, build; registers the add-in
#                                 (regsvr32 under Wine, veerback register on Linux)
#   hostsim_start ARGS...         starts hostsim in the background and waits until it is ready
#   hostsim_stop                  stops it
#   hostsim_teardown              unregisters the add-in, stops the Wine server, removes the work folder

hostsim_setup() {
  platform=$1
  build="$PWD/build/$platform"
  work=$(mktemp -d /tmp/veerback.XXXXXX)
  if [ "$platform" = windows ]; then
    wine_run() { "$PWD/cmake/wine-run.sh" --prefix "$build/wineprefix" "$@"; }
    run() { wine_run "$@"; }
    native() { printf 'Z:%s' "$1" | tr / '\\'; }
    exe=.exe
    module=$(native "$build/src/addin/twveerbackglf.dll")
    wine_run --start-server
    wine_run regsvr32 /s "$module"
  else
    run() { "$@"; }
    native() { printf '%s' "$1"; }
    exe=
    # The registry store lives under the work folder's configuration.
    export XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work"
  fi
  hostsim="$build/tools/hostsim/hostsim$exe"
  veerback="$build/tools/veerback/veerback$exe"
  [ "$platform" = windows ] || "$veerback" register "$build/src/addin/twveerbackglf.so" >/dev/null
}

hostsim_start() {
  rm -f "$work/quit" "$work/hostsim.out"
  run "$hostsim" --quit-file "$(native "$work/quit")" --timeout 900 "$@" >"$work/hostsim.out" 2>&1 &
  host=$!
  for _ in $(seq 1 600); do
    grep -q 'hostsim: ready' "$work/hostsim.out" 2>/dev/null && return 0
    kill -0 "$host" 2>/dev/null || break
    sleep 0.1
  done
  echo "hostsim did not start:"
  cat "$work/hostsim.out"
  return 1
}

hostsim_stop() {
  touch "$work/quit"
  wait "$host" || true
}

hostsim_teardown() {
  if [ "$platform" = windows ]; then
    wine_run regsvr32 /u /s "$module"
    wine_run --stop-server
  else
    "$veerback" unregister "$build/src/addin/twveerbackglf.so" >/dev/null
  fi
  rm -rf "$work"
}
