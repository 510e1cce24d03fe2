#!/usr/bin/env bash
# Installs the Debian packages that building and testing need, only those that
# are missing; with --bench also the peers the benchmarks compare against.
# Run as root (or with sudo available) on Debian 12.
set -euo pipefail

packages=(
  cmake g++ make
  libboost-dev libgtest-dev libgmock-dev libbenchmark-dev
  nlohmann-json3-dev libcli11-dev libfmt-dev libutfcpp-dev
  clang libclang-rt-14-dev valgrind binutils python3
  libsqlite3-dev sqlite3 libcmark-gfm-dev libcmark-gfm-extensions-dev libkainjow-mustache-dev libutf8proc-dev
  dpkg-dev fakeroot file pkg-config libxml2-utils lintian man-db
  chromium chromium-driver python3-selenium nodejs
  zlib1g-dev python3-sphinx python3-jsonschema
)
# Peers of the benchmarks only (scripts/bench.sh): protocol buffers for the copy and equality baselines.
if [ "${1:-}" = "--bench" ]; then packages+=(libprotobuf-dev protobuf-compiler); fi

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
  [ "$status" = "install ok installed" ] || missing+=("$package")
done
# npm installs axe-core for the browser tests; a node from elsewhere may bring its own npm.
command -v npm >/dev/null || missing+=(npm)

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all ${#packages[@]} packages are installed"
  exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "setup: missing ${missing[*]}; run as root to install them" >&2; exit 1; }
  as_root=(sudo)
fi

echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update
"${as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
