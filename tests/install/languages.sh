#!/bin/sh
# README's programs in C++ and C and the examples in other languages find the lexicon of an installed tree by
# themselves, from any folder, and agree with the program; without one they tell where they looked.
#   languages.sh SOURCE BUILD CMAKE CXX CC
# 77: no lexicon was made. A language whose compiler is missing is named and left out.
set -eu
source=$1
build=$2
cmake=$3
cxx=$4
cc=$5
[ -f "$build/share/tavo/SysDic" ] || exit 77
folder=$(mktemp -d)
trap 'chmod -R u+w "$folder"; rm -rf "$folder"' EXIT
unset DESTDIR TAVO_PATH

complain() {
    echo "languages: $1"
    exit 1
}

prefix="$folder/prefix"
"$cmake" --install "$build" --prefix "$prefix" >"$folder/log" || { cat "$folder/log"; exit 1; }
library=$(dirname "$(find "$prefix" -name libtavo.so)")
export LD_LIBRARY_PATH="$library" LIBRARY_PATH="$library" CPATH="$prefix/include"
mkdir "$folder/elsewhere"
cd "$folder/elsewhere"
printf 'すもももものうち、naïveに\377食べた。\n\n' >text
"$prefix/bin/tavo" -O json text |
    sed 's/},{/\n/g' | sed -n 's/.*"surface":"\([^"]*\)".*"reading":"\{0,1\}\([^",]*\).*/\1\t\2/p' | sed 's/\tnull$/\t/' >expected
printf '\357\277\275' >replacement

# block LANGUAGE: the program in README behind the fence of that name.
block() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/{/^\`\`\`/d;p}" "$source/README.md"; }
# agrees NAME: the words and readings in the file NAME are the program's.
agrees() {
    awk -F '\t' '{ print $1 "\t" $NF }' "$1" | sed "s/$(printf '\377')/$(cat replacement)/" | LC_ALL=C cmp - expected ||
        complain "$1 differs: $(cat "$1")"
    echo "$1: $(wc -l <"$1") words"
}
# knows LANGUAGE PROGRAM: true when PROGRAM is there.
knows() { command -v "$2" >/dev/null || { echo "$1: left out, no $2"; return 1; }; }

export LC_ALL=C.UTF-8
block cpp >words.cpp
"$cxx" -std=c++20 words.cpp -o words-cpp -ltavo
./words-cpp <text | tr ' ' '\t' >C++
agrees C++
block c >words.c
"$cc" -std=c99 -Wall -Wextra -Werror -Wno-missing-field-initializers words.c -o words-c -ltavo
./words-c <text | tr ' ' '\t' >C
agrees C
if knows Rust rustc; then
    rustc -O "$source/examples/words.rs" -L "native=$library" -o words-rs
    ./words-rs <text >Rust
    agrees Rust
fi
if knows Go go; then
    cp "$source/examples/words.go" .
    GOCACHE="$folder/cache" GOPATH="$folder/go" GOFLAGS=-mod=mod GO111MODULE=off CGO_ENABLED=1 CGO_LDFLAGS=-ltavo \
        go build -o words-go words.go
    ./words-go <text >Go
    agrees Go
fi
if knows Ruby ruby; then
    ruby "$source/examples/words.rb" <text >Ruby
    agrees Ruby
fi

mv "$prefix/share/tavo" "$prefix/share/moved"
for program in ./words-cpp ./words-c; do
    if [ -e /usr/share/tavo/SysDic ] || [ -e /usr/local/share/tavo/SysDic ]; then break; fi
    if $program <text >nothing 2>errors; then
        [ -s nothing ] || complain "$program succeeds without a lexicon"
    fi
    grep -q "prefix/share/tavo" errors || complain "$program does not tell where it looked: $(cat errors)"
done
