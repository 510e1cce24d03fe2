#!/usr/bin/env bash
# Every check the project runs, as a sequence of stages; the first failing stage
# stops the run with its status. Add a stage as a function and list it in STAGES.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

stage_setup() { bash scripts/setup.sh; }

# Configure, build and run every test of one preset.
build_and_test() {
  cmake --preset "$1"
  cmake --build --preset "$1" -j2
  ctest --preset "$1"
  [ -d "$corpus" ] || echo "$1: the shared-corpus tests were skipped: no corpus at $corpus (put shared/ beside the checkout or set REFPROP_SHARED_DIR)"
}

stage_dev() { build_and_test dev; }
stage_asan() { build_and_test asan; }

# ThreadSanitizer where threads meet: the concurrency test (threads on their own records and
# copies, shared key tables), the doc-set test (pages loaded, summarized and checked on
# threads), the tool's set test (check, index and find on -j threads through the tool itself,
# built with ThreadSanitizer), the site test (pages rendered on threads, each with its own copy
# of the compiled templates; descriptions parsed by cmark-gfm on each) and the output folder
# (files written from several threads, interrupts handled on their own thread).
stage_tsan() {
  cmake --preset tsan
  local tests=(concurrency_test docset_test refpage_set_test site_test output_folder_test)
  cmake --build --preset tsan -j2 --target "${tests[@]}" refpage
  for test in "${tests[@]}"; do
    TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 "build/tsan/tests/$test"
  done
}

# The shared corpus of real pages, used when it is beside the checkout.
corpus="${REFPROP_SHARED_DIR:-../shared}/corpus/numpy"

# Writes a generated doc set of $3 pages with preset $1's pagegen into folder $2.
generate_pages() {
  cmake --build --preset "$1" -j2 --target pagegen
  rm -rf "$2"
  "build/$1/tools/pagegen/pagegen" --seed 1 --pages "$3" --broken-links 0.05 --duplicate-names 0.02 \
    --duplicate-hrefs 0.02 --deprecated 0.05 --non-ascii 0.05 -o "$2"
}

# libFuzzer under ASan/UBSan: each target for about a minute from seeds of real pages, or of
# generated pages without the corpus; a crash fails the stage and leaves its reproducer in
# fuzz/regressions/<target>/ for the replay test.
stage_fuzz() {
  cmake --preset fuzz
  cmake --build --preset fuzz -j2 --target page_loader_fuzzer refitem_operations_fuzzer
  local seeds=$corpus
  if [ ! -d "$corpus" ]; then
    echo "fuzz: no corpus at $corpus; seeding from generated pages"
    seeds=build/fuzz/seed-pages
    generate_pages fuzz "$seeds" 200
  fi
  bash fuzz/run_fuzzers.sh build/fuzz 60 "$seeds"
}

# Memory check of the main job: refpage check with the asan build's tool and LeakSanitizer on,
# over a generated doc set and over every real page when the corpus is there; any error or
# leak fails it.
stage_memcheck() {
  cmake --preset asan
  cmake --build --preset asan -j2 --target refpage
  generate_pages asan build/asan/memcheck-pages 400
  local folders=(build/asan/memcheck-pages)
  if [ -d "$corpus" ]; then
    folders+=("$corpus")
  else
    echo "memcheck: corpus skipped: no corpus at $corpus"
  fi
  ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    build/asan/tools/refpage/refpage check "${folders[@]}"
}

STAGES=(setup dev asan tsan fuzz memcheck)

for stage in "${STAGES[@]}"; do
  echo "==> stage ${stage}"
  start=$SECONDS
  "stage_${stage}"
  echo "==> stage ${stage} passed in $((SECONDS - start)) s"
done
echo "==> all stages passed: ${STAGES[*]}"
