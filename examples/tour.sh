#!/usr/bin/env bash
# A short tour of vexc over the sample data in this folder. Usage: tour.sh path/to/vexc
set -euo pipefail
vexc=${1:?usage: tour.sh path/to/vexc}
cd "$(dirname "$0")"

step() {
  printf '\n\033[1m== %s\033[0m\n$ vexc' "$1"; printf ' %q' "${@:2}"; printf '\n'
  "$vexc" "${@:2}"
}

step "Checksums of the sample files, one line per file" crc32 captions.txt names.txt
step "CRC-16/MODBUS of the same files" crc16 captions.txt names.txt
step "Captions taken apart: format type, words to translate, kept state" detect captions.txt
printf '\n\033[1m== Translated words put back (File_ -> Datei_, Channel -> Kanal)\033[0m\n'
printf '$ vexc detect captions.txt | sed ... | vexc apply\n'
"$vexc" detect captions.txt | sed -e 's/\tFile_/\tDatei_/' -e 's/\tChannel/\tKanal/' | "$vexc" apply
step "Numbered names compressed into group notation" group names.txt
step "A rule table (search,replacement per line) applied to text" \
  replace --rules rules.csv --count lines.txt
step "The same renames from a tab-indented rule tree" \
  replace --rules-tree rules.tree --list-key Rules lines.txt
step "Text in the quoted code form, ready to paste into source code" \
  quote --prefix '  ' captions.txt
printf '\n\033[1m== ...and decoded again\033[0m\n$ vexc quote captions.txt | vexc unquote\n'
"$vexc" quote captions.txt | "$vexc" unquote
step "Fields of a delimited line" tokens --delim ';' fields.txt
step "A bit-matrix question: may the Valve be reset?" bits matrix.txt Valve Reset || true
step "...and may the Heater?" bits matrix.txt Heater Reset
step "Fresh link identifiers" linkid -n 3 --dollar

# --- component forms (vexc form) ---

# --- tables and settings (vexc table, vexc settings) ---

# --- windows: message box (vexc message) ---

# --- windows: forms (vexc form show) ---

# --- windows: check tree viewer (vexc checktree) ---
step "A check tree file as the viewer writes it back on OK (plain nodes gain a []0| prefix)" \
  checktree --normalize checktree.txt
step "Its node names, each with kind (0 plain, 1 check box, 2 radio), image and checked state" \
  checktree --split checktree.txt
checktree_png="${TMPDIR:-/tmp}/vexc-checktree.png"
step "The check tree viewer over the same file, rendered offscreen" \
  checktree checktree.txt --screenshot "$checktree_png"
printf 'Screenshot of the viewer: %s\n' "$checktree_png"
