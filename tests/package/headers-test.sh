#!/usr/bin/env bash
# Every header of the installed copy compiles on its own, with nothing
# included before it, with the build's own compiler.
#   headers-test.sh BUILD_DIR CXX
set -eu
build=$1
cxx=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/stage" >"$work/install.log" 2>&1 || { cat "$work/install.log"; exit 1; }
cd "$work/stage/include"
find . -name '*.h' | sed 's#^\./##' | sort >"$work/headers"
[ -s "$work/headers" ] || { echo "FAIL: no headers installed"; exit 1; }
# One compiler per header; a failing one leaves its name and messages in a
# file of its own.
export cxx work
xargs -P "$(nproc)" -I{} sh -c \
  'out="$work/out.$$"; printf "#include \"%s\"\n" "$1" | "$cxx" -std=c++17 -fsyntax-only -x c++ -I . - >"$out" 2>&1 ||
   { echo "FAIL: $1"; cat "$out"; } >"$out.fail"' _ {} <"$work/headers"
failed=$(cat "$work"/*.fail 2>/dev/null | grep -c '^FAIL: ' || true)
if [ "$failed" != 0 ]; then
  cat "$work"/*.fail
  echo "$failed of $(wc -l <"$work/headers") installed headers don't compile on their own"
  exit 1
fi
echo "all $(wc -l <"$work/headers") installed headers compile on their own"
