#!/usr/bin/env bash
# Runs every fuzz target of a fuzz build for a bounded time from seeds taken
# from the real pages when they are there (else from the project's own test
# pages), with the kept regression inputs. Two thirds of each target's time run
# at libFuzzer's default input length, one third with inputs up to 1 MiB, long
# enough for deep nesting and many keys; the page loader gets a dictionary of
# the page format's words (fuzz/page.dict). A crash fails the run, and its input
# is copied into fuzz/regressions/<target>/, where the replay test keeps it fixed.
#
#   fuzz/run_fuzzers.sh <fuzz build dir> [seconds per target] [corpus dir]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build_dir=${1:?usage: fuzz/run_fuzzers.sh <fuzz build dir> [seconds per target] [corpus dir]}
seconds=${2:-60}
corpus=${3:-${REFPROP_SHARED_DIR:-../shared}/corpus/numpy}
targets=(page_loader refitem_operations)
seed_pages=40
long_max_len=1048576

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

# A few dozen real pages of every size: the largest few, then an even spread
# over the rest, smallest last.
seed() {
  local dir=$1 target=$2 files
  mkdir -p "$dir"
  cp fuzz/regressions/"$target"/* "$dir"/ 2>/dev/null || true
  if ! compgen -G "$corpus/*.json" >/dev/null; then
    cp tests/data/good/*.json "$dir"/
    return
  fi
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
  seed "$work/seeds" "$target"
  options=()
  [ "$target" = page_loader ] && options+=(-dict=fuzz/page.dict)
  short=$(( seconds * 2 / 3 ))
  long=$(( seconds - short ))
  echo "==> fuzzing $target for ${short} s + ${long} s (inputs up to $long_max_len bytes) from $(ls "$work/seeds" | wc -l) seeds"
  if "$fuzzer" "${options[@]}" -max_total_time="$short" -print_final_stats=1 -artifact_prefix="$work/artifacts/" \
        "$work/corpus" "$work/seeds" >"$work/log" 2>&1 &&
     "$fuzzer" "${options[@]}" -max_total_time="$long" -max_len="$long_max_len" -print_final_stats=1 \
        -artifact_prefix="$work/artifacts/" "$work/corpus" >>"$work/log" 2>&1; then
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/log" | awk '{ total += $1 } END { print total }')
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
