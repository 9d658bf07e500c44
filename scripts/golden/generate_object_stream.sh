#!/bin/sh
# Regenerates tests/data/golden/object_stream/*.bin: Free Pascal's ObjectTextToBinary over
# each *.txt beside them. The texts use only value kinds on which Free Pascal writes the same
# binary as the library. Needs fpc; the tests only read the committed files.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
data="$root/tests/data/golden/object_stream"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fpc -v0 -O1 -FE"$work" "$here/object_stream_golden.pas" >/dev/null
for text in "$data"/*.txt; do
  "$work/object_stream_golden" "$text" "${text%.txt}.bin"
  echo "wrote tests/data/golden/object_stream/$(basename "${text%.txt}").bin"
done
