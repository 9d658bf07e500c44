#!/usr/bin/env bash
# Builds and runs every test: first the optimised build (tests, tool, benchmarks compiled, the
# installed-package check), then the whole suite again under AddressSanitizer + UBSan.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/deps.sh

for preset in release asan; do
  echo "== ${preset}: configure, build, test"
  cmake --preset "${preset}" >/dev/null
  cmake --build --preset "${preset}"
  ctest --preset "${preset}"
done
