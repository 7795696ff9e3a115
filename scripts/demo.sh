#!/usr/bin/env bash
# The Veerback on the simulated host. Builds the add-in, hostsim and veerback,
# registers the add-in with regsvr32 under Wine (or, with --linux, with
# "veerback register" on the Linux build), starts hostsim on its built-in
# model, which finds the add-in through its registration, sends a few picks from
# the viewer's side and shows after each what the host did.
set -eu
cd "$(dirname "$0")/.."
platform=windows
[ "${1:-}" = "--linux" ] && platform=linux

scripts/setup.sh
echo "building the $platform add-in, hostsim and veerback ..."
cmake --preset "$platform" >/dev/null
cmake --build --preset "$platform" --target twveerbackglf hostsim veerback >/dev/null

. scripts/hostsim-lib.sh
hostsim_setup "$platform"
trap hostsim_teardown EXIT
state="$work/state.txt"
hostsim_start --state-file "$(native "$state")" --journal "$(native "$work/journal.txt")"
sed -n 's/^hostsim: add-in /Gearloft (hostsim) loaded the add-in: /p' "$work/hostsim.out"

picks=0
# pick TITLE veerback-send-arguments...: sends, waits for the host's state
# to show the message, and prints what the host did.
pick() {
  local title=$1
  shift
  picks=$((picks + 1))
  echo
  echo "== $picks. $title"
  run "$veerback" send "$@" || true
  for _ in $(seq 1 100); do
    tr -d '\r' <"$state" >"$work/state.last" 2>/dev/null || true
    grep -q "^messages: $picks\$" "$work/state.last" && break
    sleep 0.05
  done
  # The host's answer, shortly: what is active, its camera, what is selected.
  awk -v active="$(sed -n 's/^active document: //p' "$work/state.last")" '
    /^active document:/ { print "   active document: " substr($0, 18) }
    /^document / { current = ($2 == active) }
    current && /view [0-9]+:/ { sub(/^ +/, ""); print "   camera " $0 }
    current && /selected:/ { sub(/^ +/, ""); print "   " $0 }' "$work/state.last"
}

pick "an item deep in the open assembly, perspective" \
  --document 'C:\Models\Gearbox.gam' --item 'Shaft:1|Gear:1|Tooth:1' \
  --position 120,-80,60 --rotation 0.4892656,0.261847,0.392538,0.7334639 --near 10 --far 300 --height 0.6
pick "the whole of a part document" \
  --document 'C:\Models\Bracket.gpt' --position 0,0,90 --near 1 --far 200
pick "an assembly not open yet, named in capitals, orthographic" \
  --document 'C:\Models\PUMP.GAM' --item 'Motor:1|Rotor:1' --ortho --aspect 2 --height 10 \
  --position 0,-60,0 --rotation 0.7071068,0,0,0.7071068 --near 1 --far 120

hostsim_stop
echo
echo "hostsim journal: $(wc -l <"$work/journal.txt") calls on the host, first lines:"
head -5 "$work/journal.txt" | sed 's/^/   /'
