#!/usr/bin/env bash
# Every benchmark; each prints its ratio to its peer measured in the same run.
#   UTF-8/UTF-16 conversion against iconv, Adler-32 against zlib and libdeflate,
#   object streams against cereal, object graphs against Boost.Serialization,
#   variant data in XML against pugixml, the JSON tree against nlohmann/json
#   and RapidJSON, geometry against Eigen, the allocator against glibc,
#   mimalloc and jemalloc, name tables against unordered_map, the registry
#   against plain SQLite (Linux), URLs against libcurl's URL API, the option
#   tree against boost::property_tree, a large file streamed under an
#   allocation limit against none, warm reads of a file whole in the local
#   cache against cat of its data file (nginx serving it), natural ordering
#   against strverscmp and ICU, ISO times against strptime/timegm and gmtime_r/strftime, and the
#   Veerback's round trip in hostsim against the bare round trip, natively
#   and under Wine, and files over HTTP from nginx against one libcurl GET and
#   GDAL's /vsicurl/, on loopback and with 20 ms added to every answer.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake --preset linux >/dev/null
cmake --build --preset linux --target bench_utf bench_stream bench_stream_objects bench_xml bench_json bench_geometry \
  bench_memory bench_name_table bench_registry bench_url bench_options bench_page_out bench_cache bench_locale_time \
  bench_http bench_veerback twveerbackglf hostsim veerback >/dev/null
cmake --preset windows >/dev/null
cmake --build --preset windows --target bench_veerback twveerbackglf hostsim veerback >/dev/null

for bench in build/linux/bench/bench_utf build/linux/bench/bench_stream build/linux/bench/bench_stream_objects \
             build/linux/bench/bench_xml build/linux/bench/bench_json build/linux/bench/bench_geometry \
             build/linux/bench/bench_memory build/linux/bench/bench_name_table build/linux/bench/bench_registry \
             build/linux/bench/bench_url build/linux/bench/bench_options build/linux/bench/bench_page_out \
             build/linux/bench/bench_cache \
             build/linux/bench/bench_locale_time; do
  echo "== $(basename "$bench")"
  "$bench" --benchmark_min_time=0.5
done
echo "== bench_http"
build/linux/bench/bench_http

. scripts/hostsim-lib.sh
rounds=${ROUNDS:-1000}
for platform in linux windows; do
  echo
  echo "== Veerback round trip, $platform ($rounds messages each)"
  hostsim_setup "$platform"
  bench="$build/bench/bench_veerback$exe"
  # The full Veerback: an open assembly, its camera and a three-level item path.
  hostsim_start
  full=$(run "$bench" "$rounds" 'C:\Models\Gearbox.gam' 'Shaft:1|Gear:1|Tooth:1' | tr -d '\r')
  hostsim_stop
  # The same message to a handler that stops at its first host call.
  hostsim_start --fail ApplicationMainWindow=0x80004005
  bare=$(run "$bench" "$rounds" 'C:\Models\Gearbox.gam' 'Shaft:1|Gear:1|Tooth:1' | tr -d '\r')
  hostsim_stop
  hostsim_teardown
  set -- $full $bare
  echo "  full Veerback: median $1 us, p99 $2 us"
  echo "  bare message:  median $3 us, p99 $4 us"
  awk -v fm="$1" -v fp="$2" -v bm="$3" -v bp="$4" \
    'BEGIN { printf "  ratio (full / bare): median %.2fx, p99 %.2fx\n", fm / bm, fp / bp }'
done
