#!/usr/bin/env bash
# A program outside the tree builds and runs against the installed copies:
# a staging install through find_package and through pkg-config, and the
# unpacked Debian package through find_package. The README's viewer, built
# from the staging install, sends a pick to the installed hostsim running the
# installed add-in.
#   consumer-test.sh BUILD_DIR CONSUMER_SOURCE VIEWER_SOURCE
set -eu
build=$1
source=$2
viewer=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

consume() {  # name prefix
  cmake -S "$source" -B "$work/$1" -G Ninja -DCMAKE_PREFIX_PATH="$2" -DCMAKE_BUILD_TYPE=Release >"$work/$1.log" 2>&1 ||
    { cat "$work/$1.log"; echo "FAIL: $1 does not configure"; exit 1; }
  cmake --build "$work/$1" >>"$work/$1.log" 2>&1 || { cat "$work/$1.log"; echo "FAIL: $1 does not build"; exit 1; }
  mkdir -p "$work/$1-out"
  "$work/$1/twconsumer" "$work/$1-out" || { echo "FAIL: $1 consumer exits $?"; exit 1; }
  [ "$(stat -c %s "$work/$1-out/record.bin")" = 1728 ] || { echo "FAIL: $1 wrote no whole record"; exit 1; }
}

cmake --install "$build" --prefix "$work/stage" >/dev/null
consume staged "$work/stage"

cmake -S "$viewer" -B "$work/viewer" -G Ninja -DCMAKE_PREFIX_PATH="$work/stage" >"$work/viewer.log" 2>&1 &&
  cmake --build "$work/viewer" >>"$work/viewer.log" 2>&1 || { cat "$work/viewer.log"; echo "FAIL: the viewer does not build"; exit 1; }
export XDG_RUNTIME_DIR="$work/run" XDG_CONFIG_HOME="$work/config" TW_REGISTRY_DIR="$work/registry"
mkdir -m 700 "$XDG_RUNTIME_DIR"
"$work/stage/bin/hostsim" --addin "$work/stage/lib/twveerbackglf.so" --verbose --quit-after 1 --timeout 60 \
  >"$work/hostsim.out" 2>&1 &
host=$!
for _ in $(seq 1 600); do
  grep -q 'hostsim: ready' "$work/hostsim.out" && break
  kill -0 "$host" 2>/dev/null || break
  sleep 0.1
done
"$work/viewer/viewer" || { kill "$host" 2>/dev/null; cat "$work/hostsim.out"; echo "FAIL: the viewer's send exits $?"; exit 1; }
wait "$host" || { cat "$work/hostsim.out"; echo "FAIL: hostsim exits $?"; exit 1; }
grep -q 'message 1: active document C:\\Models\\Gearbox.gam, camera applied, selected Shaft:1|Gear:1, no call failed' \
  "$work/hostsim.out" || { cat "$work/hostsim.out"; echo "FAIL: the host didn't do the viewer's pick"; exit 1; }

mkdir -p "$work/pkgconfig-out"
flags=$(PKG_CONFIG_PATH="$work/stage/lib/pkgconfig" pkg-config --cflags --libs twveerbackglf)
g++ -std=c++17 -o "$work/pkgconfig-consumer" "$source/main.cpp" $flags
"$work/pkgconfig-consumer" "$work/pkgconfig-out"

(cd "$work" && cpack --config "$build/CPackConfig.cmake" -G DEB -B "$work/deb" >"$work/cpack.log" 2>&1) ||
  { cat "$work/cpack.log"; echo "FAIL: cpack"; exit 1; }
package=$(ls "$work"/deb/twveerbackglf_*.deb)
dpkg-deb -f "$package" Depends | grep -q libpugixml-dev || { echo "FAIL: dependencies not declared"; exit 1; }
for file in usr/bin/veerback usr/bin/hostsim usr/lib/twveerbackglf.so usr/lib/libfoundation.a \
            usr/include/addin/LcOmTrackBackSender.h usr/lib/cmake/twveerbackglf/twveerbackglfConfig.cmake \
            usr/lib/pkgconfig/twveerbackglf.pc; do
  dpkg-deb -c "$package" | grep -q "\./$file\$" || { echo "FAIL: the package lacks $file"; exit 1; }
done
dpkg-deb -x "$package" "$work/unpacked"
consume unpacked "$work/unpacked/usr"
echo "consumers built and ran against the staging install, pkg-config and the Debian package; the viewer's pick reached the installed host"
