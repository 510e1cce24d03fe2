#!/usr/bin/env bash
# Installs the benchmark peers, builds the benchmark binary with the release preset
# (a missing peer stops it there), runs the whole suite (medians
# of 10 repetitions) and writes bench/RESULTS.md and bench/object_array.svg from
# the JSON it produces. Extra arguments go to the benchmark binary
# (e.g. --benchmark_filter=page_). Not part of the tests or CI.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$root"

bash scripts/setup.sh --bench
cmake --preset release -DREFPROP_BENCH_REQUIRE_PEERS=ON >/dev/null
cmake --build --preset release -j2 --target refprop_bench

# The doc-set benchmarks run over a generated doc set of about the size of a real one.
cmake --build --preset release -j2 --target pagegen
pages="$root/build/release/bench/docset-pages"
rm -rf "$pages"
"$root/build/release/tools/pagegen/pagegen" --seed 1 --pages 2300 --broken-links 0.05 --duplicate-names 0.02 \
  --deprecated 0.05 -o "$pages" >/dev/null
export REFPROP_BENCH_PAGES="$pages"

results="$root/build/release/bench/results.json"
command="bash scripts/bench.sh${*:+ $*}"
"$root/build/release/bench/refprop_bench" \
  --benchmark_repetitions=10 --benchmark_report_aggregates_only=true \
  --benchmark_out="$results" --benchmark_out_format=json "$@"

python3 "$root/bench/report" "$results" "$command" "$root/bench/RESULTS.md"
python3 "$root/bench/plot" "$results" "$root/bench/object_array.svg"
echo "Wrote bench/RESULTS.md and bench/object_array.svg from $results"
