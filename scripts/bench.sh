#!/usr/bin/env bash
# Builds the benchmarks (release preset) and runs them, each with three repetitions, ending with
# the table of every library/alternative ratio beside its target. Arguments name benchmark
# programs without the vex_ prefix and _bench suffix (e.g. `scripts/bench.sh thread crc`);
# none runs them all. The dataset benchmark needs the sqlite3 shell and takes minutes.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/deps.sh
cmake --preset release >/dev/null
if [ $# -eq 0 ]; then
  set -- $(ls bench/*_bench.cpp | sed 's#bench/\(.*\)_bench.cpp#\1#')
fi
cmake --build --preset release --target $(printf 'vex_%s_bench ' "$@")

summary=$(mktemp)
output=$(mktemp)
trap 'rm -f "$summary" "$output"' EXIT
for name in "$@"; do
  echo "== vex_${name}_bench (load average: $(cut -d' ' -f1-3 /proc/loadavg))"
  QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen} "build/release/bench/vex_${name}_bench" \
    --benchmark_repetitions=3 --benchmark_report_aggregates_only=true | tee "$output"
  sed -n '/^Ratios/,$p' "$output" | sed '1d' >>"$summary"
done
echo
echo "All ratios (speed = the alternative's time / the library's time):"
cat "$summary"
