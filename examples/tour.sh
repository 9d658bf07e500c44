#!/usr/bin/env bash
# A short tour of vexc over the sample data in this folder. Usage: tour.sh path/to/vexc
# Any step that fails ends the tour with its exit code (scripts/test.sh runs the tour).
# Steps run in this folder; files a step writes (window screenshots and the like) go to "$out",
# build/tour under the repository root unless VEX_TOUR_OUT names another folder.
set -euo pipefail
vexc=${1:?usage: tour.sh path/to/vexc}
# The path may be relative to the caller's directory: fix it before changing directory.
if [[ $vexc == */* ]]; then vexc=$(realpath -- "$vexc"); fi
cd "$(dirname "$0")"
out=$(realpath -m -- "${VEX_TOUR_OUT:-../build/tour}")
mkdir -p "$out"
# Windows need a display; without one, Qt draws them off screen.
if [[ -z ${DISPLAY:-} && -z ${WAYLAND_DISPLAY:-} ]]; then export QT_QPA_PLATFORM=offscreen; fi

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
# Exit code 1 is the answer "clear", not a failure.
step "A bit-matrix question: may the Valve be reset?" bits matrix.txt Valve Reset || [[ $? -eq 1 ]]
step "...and may the Heater?" bits matrix.txt Heater Reset
step "Fresh link identifiers" linkid -n 3 --dollar

# --- component forms (vexc form) ---
step "A form description saved by a designer, checked to come back byte for byte" \
  form check forms/login.dfm
step "The same form as a binary component stream (the first bytes)" \
  form tobinary forms/login.dfm -o "$out/login.bin"
od -A d -c "$out/login.bin" | head -3
step "...and back to text" form totext "$out/login.bin"
step "An older designer's form: general-format floats and raw Windows-1252 bytes" \
  form check --older forms/older_settings.dfm

# --- tables and settings (vexc table, vexc settings) ---
shop_db="$out/tour_shop.db"
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
step "A message box composed from a language file (caption|message, %1 and \\n filled in)" \
  message 'Errors\NoFile' --lang messages.lang --arg channels.txt --print
step "...the same box rendered offscreen into a PNG" \
  message 'Errors\NoFile' --lang messages.lang --arg channels.txt --type error \
  --screenshot "$out/message_box.png"

# --- windows: forms (vexc form show) ---
step "A form description read into a control tree, control by control" \
  form describe forms/order.dfm
step "A form with classes and properties the library does not know: each problem named" \
  form describe forms/gauges.dfm
if "$vexc" form show --help >/dev/null 2>&1; then
  step "The form rendered with Qt (offscreen) into a picture" \
    form show forms/order.dfm --screenshot "$out/form_order.png"
  step "...and the one with unknown classes, as labelled placeholders" \
    form show forms/gauges.dfm --screenshot "$out/form_gauges.png"
fi

# --- windows: check tree viewer (vexc checktree) ---
step "A check tree file as the viewer writes it back on OK (plain nodes gain a []0| prefix)" \
  checktree --normalize checktree.txt
step "Its node names, each with kind (0 plain, 1 check box, 2 radio), image and checked state" \
  checktree --split checktree.txt
step "The check tree viewer over the same file, rendered offscreen" \
  checktree checktree.txt --screenshot "$out/check_tree_viewer.png"

printf '\n\033[1m== Tour finished\033[0m\n'
if compgen -G "$out/*.png" >/dev/null; then
  printf 'Pictures of the windows it drew:\n'
  printf '  %s\n' "$out"/*.png
fi
