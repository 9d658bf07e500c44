#!/bin/sh
# Regenerates tests/data/golden/string_list.tsv from the Pascal string list of Free Pascal.
# Needs fpc; the tests only read the committed file.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fpc -v0 -O1 -FE"$work" "$here/string_list_golden.pas" >/dev/null
"$work/string_list_golden" > "$root/tests/data/golden/string_list.tsv"
echo "wrote tests/data/golden/string_list.tsv"
