#!/bin/sh
# Analyses the golden cases and compares each with its expected output.
#
#   run.sh TAVO MAKE_CONN_TABLE compare CASE...
#   run.sh TAVO MAKE_CONN_TABLE update CASE...   write the expected outputs anew: read the diff
#   run.sh TAVO MAKE_CONN_TABLE self-test        prove that a difference is seen
#
# Programs and cases are named from the root. A case is a folder (all texts UTF-8):
#     conn.txt      names of the parts of speech and connection costs, as
#                   tests/cli/make_conn_table.cpp tells
#     words.txt     dictionary source
#     options       arguments of the program, one a line; may be missing
#     tavo.init     settings, with files *.rules and *.list that it names; may be
#                   missing. It names SysDic and ConnTable without folder.
#     input.txt     the text
#     expected.txt  what the program writes, byte for byte
set -eu
tavo=$1 make_conn_table=$2 what=$3
shift 3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Writes what the program says of the case to $folder/found.
analyse() {
    rm -rf "$folder/lexicon"
    mkdir "$folder/lexicon"
    cd "$folder/lexicon"
    "$make_conn_table" "$1/conn.txt" ConnTable
    "$tavo" dic build "$1/words.txt" -c ConnTable -o SysDic
    for file in "$1"/tavo.init "$1"/*.rules "$1"/*.list; do
        [ ! -e "$file" ] || iconv -f UTF-8 -t CP932 -o "${file##*/}" "$file"
    done
    if [ -e tavo.init ]; then set -- "$1" -i tavo.init; else set -- "$1" -d SysDic -c ConnTable; fi
    case=$1
    shift
    { [ ! -e "$case/options" ] || cat "$case/options"; echo "$case/input.txt"; } |
        xargs -d '\n' "$tavo" "$@" >"$folder/found"
}

compare() {
    analyse "$1"
    diff -u "$1/expected.txt" "$folder/found"
}

must_differ() {
    analyse "$copy"
    if cmp -s "$copy/expected.txt" "$folder/found"; then
        echo "not seen: $1"
        exit 1
    fi
}

case $what in
compare)
    [ $# -gt 0 ] || { echo "no cases"; exit 2; }
    for each; do compare "$each"; done
    ;;
update)
    for each; do analyse "$each"; cp "$folder/found" "$each/expected.txt"; done
    ;;
self-test)
    copy=$folder/case
    cp -R "$(cd "$(dirname "$0")" && pwd)/cases/sums_along_a_path" "$copy"
    compare "$copy"
    cp "$copy/expected.txt" "$folder/sound"
    { printf x && tail -c +2 "$folder/sound"; } >"$copy/expected.txt"
    must_differ "a changed byte"
    head -c -1 "$folder/sound" >"$copy/expected.txt"
    must_differ "a missing end"
    : >"$copy/expected.txt"
    must_differ "nothing expected"
    # A cost that decides the path has to change the answer.
    cp "$folder/sound" "$copy/expected.txt"
    echo "Noun Verb 255" >>"$copy/conn.txt"
    must_differ "another connection cost"
    ;;
*)
    echo "what is \"$what\"?"
    exit 2
    ;;
esac
