#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, when missing.
set -eu
packages=(cmake ninja-build g++ gcc make ccache clang libclang-rt-14-dev
          mingw-w64 mingw-w64-tools wine wine64 libwine-dev
          googletest libgtest-dev libbenchmark-dev libeigen3-dev zlib1g-dev
          libsqlite3-dev sqlite3 libmimalloc-dev libjemalloc-dev
          libssl-dev libpugixml-dev libcurl4-openssl-dev libdeflate-dev libcereal-dev libboost-serialization-dev
          nlohmann-json3-dev rapidjson-dev nsis pkg-config libicu-dev
          python3 openssl nginx-light gdal-bin)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "setup: installing ${missing[*]}"
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO=sudo
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "${missing[@]}" >/dev/null
fi
