#!/usr/bin/env bash
# A short tour of vexc over the sample data in this folder. Usage: tour.sh path/to/vexc
set -euo pipefail
vexc=${1:?usage: tour.sh path/to/vexc}
case $vexc in /*) ;; *) vexc=$PWD/$vexc ;; esac  # still valid after the cd below
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
shop_db="$(dirname "$vexc")/tour_shop.db"
rm -f "$shop_db"
step "A dataset text file loaded into a fresh SQLite table, in one transaction" \
  table load "$shop_db" Items shop_items.txt --create \
  --type Id=autoinc --type Qty=integer --type Price=float --type Added=date
step "...and dumped again: quotes, semicolons and SQL words are plain data" \
  table dump "$shop_db" Items
step "A file with a bad number on one line is refused whole" \
  table load "$shop_db" Items shop_items_bad.txt || true
step "Settings kept in a Section/Key/Value table" settings set "$shop_db" 'Window\Width' 640
step "...read back by path" settings get "$shop_db" 'Window\Width'
step "...or the default when missing" settings get "$shop_db" 'Window\Height' --default 480

# --- windows: message box (vexc message) ---
shots=${VEX_SCREENSHOT_DIR:-$(cd "$(dirname "$vexc")/../.." && pwd)/screenshots}
step "A message box composed from a language file (caption|message, %1 and \\n filled in)" \
  message 'Errors\NoFile' --lang messages.lang --arg channels.txt --print
step "...the same box rendered offscreen into a PNG" \
  message 'Errors\NoFile' --lang messages.lang --arg channels.txt --type error \
  --screenshot "$shots/message_box.png"

# --- windows: forms (vexc form show) ---

# --- windows: check tree viewer (vexc checktree) ---
