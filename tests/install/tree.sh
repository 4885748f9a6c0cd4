#!/bin/sh
# What an installation lays down, that uninstalling takes it away again, and that one
# file alone is compiled for the prefix.
#   tree.sh SOURCE BUILD CMAKE
set -eu
source=$1
build=$2
cmake=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
unset DESTDIR

complain() {
    echo "tree: $1"
    exit 1
}

prefix="$folder/a prefix 日本"
"$cmake" --install "$build" --prefix "$prefix" >"$folder/log" || { cat "$folder/log"; exit 1; }
cmp "$source/LICENSE" "$prefix/share/doc/tavo/LICENSE"
for header in "$prefix"/include/tavo/*; do
    head -n 1 "$header" | grep -q 'SPDX-License-Identifier: Apache-2.0' || complain "no licence in $header"
done
if [ -f "$build/share/tavo/SysDic" ]; then
    cmp "$build/share/tavo/COPYING" "$prefix/share/tavo/COPYING"
    [ -z "$(find "$prefix" -name '*.txt' -size +1M)" ] || complain "the lexicon's source text is installed"
    sed -n 's/^\(Dic\|ConnTable\)=.*\///p' "$prefix/share/tavo/tavo.init" | while read -r value; do
        [ -f "$prefix/share/tavo/$value" ] || complain "tavo.init names $value"
    done
    echo すもも | "$prefix/bin/tavo" -O wakati >"$folder/words"
    echo すもも | cmp - "$folder/words"
fi

# Moved, and with files of others beside it.
mv "$prefix" "$folder/moved 日本"
prefix="$folder/moved 日本"
echo mine >"$prefix/share/tavo/my.dic"
echo mine >"$prefix/bin/other"
(cd "$prefix" && find . ! -type d) | sort >"$folder/before"
make -s -C "$source" uninstall DESTDIR="$folder" PREFIX='/moved 日本'
(cd "$prefix" && find . ! -type d) | sort >"$folder/after"
printf './bin/other\n./share/tavo/my.dic\n' | cmp - "$folder/after"
[ "$(wc -l <"$folder/before")" -gt 15 ] || complain "next to nothing was installed"
[ ! -e "$prefix/include/tavo" ] || complain "an empty folder stays"
if "$source/scripts/uninstall" "$prefix" 2>"$folder/errors"; then complain "uninstalled twice"; fi
grep -q 'nothing of tavo below' "$folder/errors"

knowing=$(grep -c '"command": .*TAVO_DATA_DIR' "$build/compile_commands.json") || true
[ "$knowing" -eq 1 ] || complain "$knowing files are compiled for the prefix"
