#!/bin/sh
# Runs `vexc form check` over the designer-saved forms of ../shared/corpus/forms (other
# people's files, read in place and never copied) and reports how many come back byte for
# byte. Forms of older designers (general-format floats, raw code-page bytes) are checked
# with --older. Usage: scripts/forms_conformance.sh [path/to/vexc] [corpus dir]
set -u
root=$(cd "$(dirname "$0")/.." && pwd)
vexc=${1:-"$root/build/debug/tools/vexc/vexc"}
corpus=${2:-"$root/../shared/corpus/forms"}
if [ ! -d "$corpus" ]; then
  echo "no form corpus at $corpus: nothing to check"
  exit 0
fi
# Older designers wrote these: general floats, and raw bytes in 18 and 27.
older="18 19 20 26 27 34"
raw="18 27"
total=0
passed=0
for form in "$corpus"/*.dfm; do
  number=$(basename "$form" | cut -c1-2)
  set --
  case " $older " in *" $number "*) set -- --general-floats ;; esac
  case " $raw " in *" $number "*) set -- --older ;; esac
  total=$((total + 1))
  if "$vexc" form check "$@" "$form" >/dev/null 2>&1; then
    passed=$((passed + 1))
  else
    echo "DIFFERS: $(basename "$form")"
    "$vexc" form check "$@" "$form" 2>&1 | sed 's/^/  /'
  fi
done
echo "$passed of $total forms come back byte for byte"
[ "$passed" -eq "$total" ]
