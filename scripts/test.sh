#!/usr/bin/env bash
# Builds Linux and Windows (run under Wine) and runs every test of both.
#   --asan       also the Linux build with AddressSanitizer and UBSan
#   --tsan       also the tests of locks, threads, queues, the option tree and the block
#                cache's workers under ThreadSanitizer
#   --fuzz SECS  also build the fuzz targets and run each for SECS seconds
# Ends with one line: "N passed, N failed".
set -u
cd "$(dirname "$0")/.."
asan=0
tsan=0
fuzz=0
while [ $# -gt 0 ]; do
  case "$1" in
    --asan) asan=1 ;;
    --tsan) tsan=1 ;;
    --fuzz) fuzz="${2:?--fuzz takes seconds}"; shift ;;
    *) echo "usage: scripts/test.sh [--asan] [--tsan] [--fuzz SECONDS]" >&2; exit 2 ;;
  esac
  shift
done

scripts/setup.sh || { echo "setup failed"; echo "0 passed, 1 failed"; exit 1; }

passed=0
failed=0
jobs=$(nproc)
presets=(linux windows)
[ "$asan" = 1 ] && presets+=(linux-asan)
[ "$tsan" = 1 ] && presets+=(linux-tsan)

for preset in "${presets[@]}"; do
  echo "== $preset"
  # Under ThreadSanitizer only the subsystems with threads of their own.
  targets=()
  labels=()
  if [ "$preset" = linux-tsan ]; then
    targets=(--target tests_foundation --target tests_options --target tests_filestream)
    labels=(-L 'foundation|options|filestream')
  fi
  if ! cmake --preset "$preset" >"build-$preset.log" 2>&1 || ! cmake --build --preset "$preset" -j "$jobs" "${targets[@]}" >>"build-$preset.log" 2>&1; then
    tail -40 "build-$preset.log"
    echo "$preset: build failed"
    failed=$((failed + 1))
    continue
  fi
  rm -f "build-$preset.log"
  # A Wine process now and then dies at start-up before the program runs;
  # a second try tells that apart from a test that fails.
  retry=()
  [ "$preset" = windows ] && retry=(--repeat until-pass:2)
  out=$(ctest --preset "$preset" -j "$jobs" "${labels[@]}" "${retry[@]}" 2>&1)
  echo "$out" | grep -E 'tests passed|\((Failed|Timeout|Not Run|SEGFAULT|Exception)\)' || true
  total=$(echo "$out" | sed -n 's/.*tests passed, \([0-9]*\) tests\? failed out of \([0-9]*\).*/\2/p')
  bad=$(echo "$out" | sed -n 's/.*tests passed, \([0-9]*\) tests\? failed out of \([0-9]*\).*/\1/p')
  if [ -z "$total" ]; then
    echo "$out" | tail -20
    failed=$((failed + 1))
    continue
  fi
  passed=$((passed + total - bad))
  failed=$((failed + bad))
done

if [ "$fuzz" != 0 ]; then
  echo "== fuzz ($fuzz s each)"
  if cmake --preset fuzz >build-fuzz.log 2>&1 && cmake --build --preset fuzz -j "$jobs" --target fuzzers >>build-fuzz.log 2>&1; then
    rm -f build-fuzz.log
    # The targets run side by side, one per processor; results in order after.
    names=()
    for target in build/fuzz/fuzz/fuzz_*; do
      [ -x "$target" ] || continue
      name=$(basename "$target")
      names+=("$name")
      corpus="build/fuzz/corpus/$name"
      mkdir -p "$corpus"
      # fuzz/<target>.seeds names an outside folder of seed inputs.
      seeds=()
      [ -f "fuzz/$name.seeds" ] && seeds=("$(cat "fuzz/$name.seeds")")
      rm -f "build/fuzz/$name.rc"
      while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do wait -n || true; done
      ( "$target" -max_total_time="$fuzz" -max_len=4096 -rss_limit_mb=4096 "$corpus" "${seeds[@]}" \
          >"build/fuzz/$name.log" 2>&1
        echo $? >"build/fuzz/$name.rc" ) &
    done
    wait
    for name in "${names[@]}"; do
      if [ "$(cat "build/fuzz/$name.rc" 2>/dev/null)" = 0 ]; then
        echo "$name: clean"
        passed=$((passed + 1))
      else
        tail -30 "build/fuzz/$name.log"
        echo "$name: FAILED"
        failed=$((failed + 1))
      fi
    done
  else
    tail -40 build-fuzz.log
    failed=$((failed + 1))
  fi
fi

echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
