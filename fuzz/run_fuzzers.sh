#!/usr/bin/env bash
# Runs every fuzz target of a fuzz build for a bounded time from seeds taken
# from the real pages. A crash fails the run, and its input is copied into
# fuzz/regressions/<target>/, where the replay test keeps it fixed.
#
#   fuzz/run_fuzzers.sh <fuzz build dir> [seconds per target] [corpus dir]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build_dir=${1:?usage: fuzz/run_fuzzers.sh <fuzz build dir> [seconds per target] [corpus dir]}
seconds=${2:-60}
corpus=${3:-${REFPROP_SHARED_DIR:-../shared}/corpus/numpy}
targets=(page_loader refitem_operations)
seed_pages=40

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

# A few dozen real pages of every size: the largest few, then an even spread
# over the rest, smallest last.
seed() {
  local dir=$1 files
  mkdir -p "$dir"
  mapfile -t files < <(ls -S "$corpus"/*.json)
  local count=${#files[@]}
  local step=$(( count / (seed_pages - 8) ))
  cp "${files[@]:0:8}" "$dir"/
  for (( i = 8; i < count; i += step )); do cp "${files[$i]}" "$dir"/; done
}

status=0
for target in "${targets[@]}"; do
  fuzzer="$build_dir/fuzz/${target}_fuzzer"
  work="$build_dir/fuzz-run/$target"
  rm -rf "$work"
  mkdir -p "$work/corpus" "$work/artifacts"
  seed "$work/seeds"
  echo "==> fuzzing $target for ${seconds} s from $(ls "$work/seeds" | wc -l) seed pages"
  if "$fuzzer" -max_total_time="$seconds" -print_final_stats=1 -artifact_prefix="$work/artifacts/" \
      "$work/corpus" "$work/seeds" >"$work/log" 2>&1; then
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/log")
    echo "==> $target: ${executions:-?} executions, no crash"
  else
    status=1
    tail -n 40 "$work/log"
    mkdir -p "fuzz/regressions/$target"
    for artifact in "$work"/artifacts/*; do
      [ -e "$artifact" ] || continue
      cp "$artifact" "fuzz/regressions/$target/"
      echo "==> $target crashed: reproducer kept as fuzz/regressions/$target/$(basename "$artifact")"
    done
  fi
done
exit $status
