#!/bin/sh
# Rebuilds the golden tables in tests/data/golden from the Pascal generator. Needs fpc; the
# tests only read the committed tables.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
out="$root/tests/data/golden"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fpc -v0 -O1 -FE"$work" "$here/format_golden.pas" >/dev/null
mkdir -p "$out"
for table in format inttostr floattostr formatfloat strtoint strtofloat; do
  LC_ALL=C "$work/format_golden" "$table" >"$out/$table.tsv"
done
wc -l "$out"/*.tsv
