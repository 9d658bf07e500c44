#!/usr/bin/env bash
# Builds and runs every test: first the optimised build (tests, tool, benchmarks compiled, the
# installed-package check) and the README's run command exactly as a user types it, then the
# whole suite again under AddressSanitizer + UBSan.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/deps.sh

for preset in release asan; do
  echo "== ${preset}: configure, build, test"
  cmake --preset "${preset}" >/dev/null
  cmake --build --preset "${preset}"
  ctest --preset "${preset}"
  if [ "${preset}" = release ]; then
    echo "== scripts/run.sh: the tour, from the repository root as the README says"
    scripts/run.sh
  fi
done
