#!/usr/bin/env bash
# Quick start: set up, build the refpage tool optimised, and show the bundled sample page.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

bash scripts/setup.sh
cmake --preset release
cmake --build --preset release -j2 --target refpage
build/release/tools/refpage/refpage show
