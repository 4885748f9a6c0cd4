#!/bin/sh
# Every function of the flat interface's headers is exported, no other of its
# names is, functions.txt lists them all, and the tests here call each.
#   exports.sh HEADERS LIBRARY
set -eu
list=$(dirname "$0")/functions.txt
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

grep -v '^#' "$list" | LC_ALL=C sort >"$folder/listed"
nm --dynamic --defined-only --format=posix "$2" | sed -n 's/^\(tavo[A-Za-z0-9_]*\) .*/\1/p' | LC_ALL=C sort >"$folder/exported"
cat "$1/tavo.h" "$1/tavo_bulk.h" "$1/tavo_legacy.h" "$1/tavo_text.h" "$1/tavo_compile.h" | grep -v '^///' | grep -o '\btavo[A-Za-z0-9_]*(' | tr -d '(' |
    LC_ALL=C sort -u >"$folder/declared"
diff -u "$folder/listed" "$folder/exported" || { echo "listed functions and exported symbols differ"; exit 1; }
diff -u "$folder/listed" "$folder/declared" || { echo "listed and declared functions differ"; exit 1; }
while read -r name; do
    grep -qw "$name" "$(dirname "$0")"/*.[ch]* || { echo "no test calls $name"; exit 1; }
done <"$folder/listed"
echo "$(wc -l <"$folder/listed") functions"
