#!/bin/sh
# Proves that scripts and program work in an empty environment, in the locale C, as another
# user than root, and from folders with blanks and Japanese in their names.
#   any_place.sh SOURCE BUILD
set -eu
source=$1
build=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

place="$folder/道 具"
# Copied, since others may not look into the folder of the checkout.
mkdir -p "$place/build/bin"
for each in "$source"/*; do
    case ${each##*/} in build*) ;; *) cp -R "$each" "$place" ;; esac
done
cp "$build/bin/tavo" "$place/build/bin"
cp -RP "$build/lib" "$place/build"
cp -RL "$build/python" "$place/build"
cp -R "$source/tests/cli/world/mecab" "$place/辞 書"
as=
if [ "$(id -u)" = 0 ]; then
    chown -R nobody "$folder"
    as='setpriv --reuid nobody --regid nogroup --clear-groups'
fi

# What is run is one line of shell, in the place.
run() {
    # $as is several words on purpose.
    # shellcheck disable=SC2086
    (cd "$place" && $as env -i PATH="$PATH" HOME="$place" LC_ALL=C sh -euc "$1") >"$folder/out" 2>&1 ||
        { cat "$folder/out"; echo "any_place: failed: $1"; exit 1; }
    if ! grep -q "$2" "$folder/out"; then cat "$folder/out"; echo "any_place: no \"$2\" from: $1"; exit 1; fi
}

run "scripts/make-lexicon build '辞 書' '出 力'" 'entries read: 6'
run "scripts/make-lexicon build '辞 書' '出 力'" 'up to date: 出 力'
run "echo 山は川 | build/bin/tavo -i '出 力/tavo.init' -O wakati" '^山 は 川$'
run "echo 山は川 | TAVO_PATH='$place/出 力' build/bin/tavo -O json" '山'
run "sed -i '/^Dic\\|^ConnTable/d' '出 力/tavo.init'; cd '出 力'; echo 山は川 | '$place/build/bin/tavo' -i tavo.init -O wakati" '^山 は 川$'
run "TAVO_PATH='$place/出 力' BUILD='$place/build' scripts/demo" '^.*JSON with positions'
run "make help" 'make test'
run "scripts/check-layers" '0 faults'
run "scripts/check-symbols build/lib/libtavo.so" 'as listed'
run "TAVO_PATH='$place/出 力' PYTHONPATH=build/python /usr/bin/python3 -B examples/analyze.py 山は川" '山.*ヤマ'
run "mkdir buildings build-asan; make clean; ls" '^buildings$'
run "ls; test ! -e build; test ! -e build-asan" '^src$'
