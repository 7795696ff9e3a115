#!/usr/bin/env bash
# A Windows program that leaves a child running must still end its test at
# once: the child may not keep the output that CTest reads open.
#   WineRunChildren.sh RUNNER...
set -u
start=$SECONDS
# ping goes on for 40 s in the background; the output must end well before.
output=$("$@" cmd.exe /c 'start /b ping -n 40 127.0.0.1 & echo started' | cat)
elapsed=$((SECONDS - start))
if [ $elapsed -ge 20 ]; then
  echo "the program's child kept the output open for $elapsed s"
  exit 1
fi
case "$output" in
  *started*) echo "ended after $elapsed s with the program's own output" ;;
  *) echo "the program's output was lost: $output"; exit 1 ;;
esac
