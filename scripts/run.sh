#!/usr/bin/env bash
# Builds vexc and runs a short tour of it over the sample data in examples/.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/deps.sh
# vexc is built with the Qt module so that the tour can render its windows offscreen.
cmake --preset release -DVEX_BUILD_QT=ON >/dev/null
cmake --build --preset release --target vexc
exec examples/tour.sh build/release/tools/vexc/vexc
