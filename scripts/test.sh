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
}

stage_dev() { build_and_test dev; }
stage_asan() { build_and_test asan; }

STAGES=(setup dev asan)

for stage in "${STAGES[@]}"; do
  echo "==> stage ${stage}"
  start=$SECONDS
  "stage_${stage}"
  echo "==> stage ${stage} passed in $((SECONDS - start)) s"
done
echo "==> all stages passed: ${STAGES[*]}"
