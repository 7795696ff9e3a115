#!/usr/bin/env bash
# The Windows installer under Wine, as an administrator runs it: a silent
# install that registers the add-in, the add-in working from where it was
# installed, a second install over the first, a silent uninstall that leaves
# nothing behind, and a failed install that ends clean.
#   installer-test.sh BUILD_DIR NSIS_SCRIPT WINE_RUNNER
set -u
build=$1
script=$2
runner=$3
# A prefix of its own: the test registers and removes machine-wide keys.
prefix="$build/installer-prefix"
work=$(mktemp -d)
wine_run() { "$runner" --prefix "$prefix" "$@"; }
cleanup() {
  touch "$work/quit" 2>/dev/null
  wine_run --stop-server
  rm -rf "$work"
}
trap cleanup EXIT
fail() { echo "FAIL: $*"; exit 1; }

folder="$prefix/drive_c/Program Files/twveerbackglf"
clsid='{4285DA55-60B0-4098-802D-93FB37FFBD68}'
typelib='{87F89B3F-63AB-4FD0-9D08-2F92D86D83D3}'
iid='{D0F55412-A3DF-4877-B411-06F72ABA27D2}'
uninstall_key='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\twveerbackglf'
# The keys of ours in the registry, one a line, sorted.
our_keys() {
  for key in "HKCR\\CLSID\\$clsid" 'HKCR\TWVeerbackGlf.TWVeerbackGlfServer' 'HKCR\TWVeerbackGlf.TWVeerbackGlfServer.1' \
             "HKCR\\TypeLib\\$typelib" "HKCR\\Interface\\$iid" "$uninstall_key"; do
    wine_run reg query "$key" /s 2>/dev/null | tr -d '\r' | grep '^HKEY_' || true
  done | sort
}
# Waits, boundedly, for the uninstaller's copy in the temporary folder to finish.
wait_gone() {
  for _ in $(seq 1 200); do
    [ -e "$folder" ] || return 0
    sleep 0.1
  done
  return 1
}
expect_clean() {
  wait_gone || fail "$1: the folder is left: $(ls "$folder")"
  [ -z "$(our_keys)" ] || fail "$1: keys are left: $(our_keys)"
}

wine_run --start-server
# What an earlier run that stopped half-way may have left.
rm -rf "$folder"
for key in "HKCR\\CLSID\\$clsid" 'HKCR\TWVeerbackGlf.TWVeerbackGlfServer' 'HKCR\TWVeerbackGlf.TWVeerbackGlfServer.1' \
           "HKCR\\TypeLib\\$typelib" "HKCR\\Interface\\$iid" "$uninstall_key"; do
  wine_run reg delete "$key" /f >/dev/null 2>&1
done

installer="$build/twveerbackglf-setup.exe"
for round in first second; do
  wine_run "$installer" /S || fail "the $round install exits $?"
  [ -f "$folder/twveerbackglf.dll" ] && [ -f "$folder/veerback.exe" ] && [ -f "$folder/uninstall.exe" ] ||
    fail "the $round install left no files"
done
expected="HKEY_CLASSES_ROOT\\CLSID\\$clsid
HKEY_CLASSES_ROOT\\CLSID\\$clsid\\Description
HKEY_CLASSES_ROOT\\CLSID\\$clsid\\Implemented Categories
HKEY_CLASSES_ROOT\\CLSID\\$clsid\\Implemented Categories\\{A1852043-E45B-4388-8B69-79B248358B99}
HKEY_CLASSES_ROOT\\CLSID\\$clsid\\InprocServer32
HKEY_CLASSES_ROOT\\CLSID\\$clsid\\ProgID
HKEY_CLASSES_ROOT\\CLSID\\$clsid\\Settings
HKEY_CLASSES_ROOT\\CLSID\\$clsid\\TypeLib
HKEY_CLASSES_ROOT\\CLSID\\$clsid\\VersionIndependentProgID
HKEY_CLASSES_ROOT\\TWVeerbackGlf.TWVeerbackGlfServer
HKEY_CLASSES_ROOT\\TWVeerbackGlf.TWVeerbackGlfServer.1
HKEY_CLASSES_ROOT\\TWVeerbackGlf.TWVeerbackGlfServer.1\\CLSID
HKEY_CLASSES_ROOT\\TWVeerbackGlf.TWVeerbackGlfServer\\CLSID
HKEY_CLASSES_ROOT\\TWVeerbackGlf.TWVeerbackGlfServer\\CurVer
HKEY_CLASSES_ROOT\\TypeLib\\$typelib\\1.0
HKEY_CLASSES_ROOT\\TypeLib\\$typelib\\1.0\\0
HKEY_CLASSES_ROOT\\TypeLib\\$typelib\\1.0\\0\\win64
HKEY_CLASSES_ROOT\\TypeLib\\$typelib\\1.0\\FLAGS
HKEY_CLASSES_ROOT\\TypeLib\\$typelib\\1.0\\HELPDIR
HKEY_CLASSES_ROOT\\Interface\\$iid
HKEY_CLASSES_ROOT\\Interface\\$iid\\ProxyStubClsid
HKEY_CLASSES_ROOT\\Interface\\$iid\\ProxyStubClsid32
HKEY_CLASSES_ROOT\\Interface\\$iid\\TypeLib
HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\twveerbackglf"
[ "$(our_keys)" = "$(echo "$expected" | sort)" ] || fail "the registry holds other keys than ours:
$(our_keys)"
wine_run reg query 'HKCR\CLSID\'"$clsid"'\InprocServer32' /ve | tr -d '\r' | grep -qi 'Program Files\\twveerbackglf\\twveerbackglf.dll' ||
  fail "InprocServer32 does not name the installed module"

# The host finds the installed add-in through its registration and carries
# out one Veerback.
wine_run "$build/tools/hostsim/hostsim.exe" --quit-file "Z:${work//\//\\}\\quit" --timeout 300 \
  --state-file "Z:${work//\//\\}\\state.txt" >"$work/hostsim.out" 2>&1 &
host=$!
for _ in $(seq 1 600); do
  grep -q 'hostsim: ready' "$work/hostsim.out" 2>/dev/null && break
  kill -0 "$host" 2>/dev/null || break
  sleep 0.1
done
grep -q 'hostsim: ready' "$work/hostsim.out" || { cat "$work/hostsim.out"; fail "hostsim did not start"; }
wine_run "$folder/veerback.exe" send --document 'C:\Models\Gearbox.gam' --item 'Shaft:1' >/dev/null 2>&1 ||
  fail "veerback send gives no listener"
for _ in $(seq 1 100); do
  tr -d '\r' <"$work/state.txt" 2>/dev/null | grep -q '^messages: 1$' && break
  sleep 0.1
done
tr -d '\r' <"$work/state.txt" | grep -q '^messages: 1$' || fail "the host handled no message"
# The record folder is made by the first send.
wine_run "$folder/veerback.exe" doctor >"$work/doctor.txt" 2>&1 ||
  { cat "$work/doctor.txt"; fail "veerback doctor fails against the installed add-in"; }
touch "$work/quit"
wait "$host" || fail "hostsim exits $?"

wine_run "$folder/uninstall.exe" /S || fail "the uninstaller exits $?"
expect_clean "uninstall"

# A module that can't register: the install refuses with its own code and
# leaves nothing, and an uninstall after it still ends clean.
echo "not a module" >"$work/broken.dll"
makensis -V1 -DDLL="$work/broken.dll" -DVEERBACK="$build/tools/veerback/veerback.exe" \
  -DOUTFILE="$work/broken-setup.exe" -DVERSION=0 "$script" >/dev/null || fail "makensis"
wine_run "$work/broken-setup.exe" /S
[ $? = 2 ] || fail "a failed registration does not exit 2"
expect_clean "failed install"
wine_run "$installer" /S || fail "the install before the failed one exits $?"
wine_run "$work/broken-setup.exe" /S
wine_run "$folder/uninstall.exe" /S || fail "the uninstaller after a failed install exits $?"
expect_clean "uninstall after a failed install"
echo "installed, used, reinstalled, uninstalled and refused cleanly"
