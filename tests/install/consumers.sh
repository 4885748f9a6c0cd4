#!/bin/sh
# Installs the build below a fresh prefix, builds a consumer against it through
# the CMake package and one through pkg-config, and runs both.
#   consumers.sh BUILD CMAKE CXX CC
set -eu
build=$1
cmake=$2
cxx=$3
cc=$4
here=$(cd "$(dirname "$0")" && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# Nothing of another installation may help.
unset CMAKE_PREFIX_PATH PKG_CONFIG_PATH LD_LIBRARY_PATH TAVO_PATH

prefix="$folder/a prefix"
"$cmake" --install "$build" --prefix "$prefix" >"$folder/install.log" || { cat "$folder/install.log"; exit 1; }

# Moved after the installation: no absolute path may be left in it.
mv "$prefix" "$folder/moved"
prefix=$folder/moved

"$cmake" -S "$here/consumer" -B "$folder/cmake" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$cxx"
"$cmake" --build "$folder/cmake"
"$folder/cmake/consumer"

pc=$(dirname "$(find "$prefix" -name tavo.pc)")
# The flags are several words on purpose.
# shellcheck disable=SC2046
PKG_CONFIG_PATH=$pc "$cxx" -std=c++20 "$here/consumer/main.cpp" -o "$folder/consumer" \
    $(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs tavo)
LD_LIBRARY_PATH=$(PKG_CONFIG_PATH=$pc pkg-config --variable=libdir tavo) "$folder/consumer"

# The headers alone are enough, each by itself, in strict C++20 and strict C99.
for header in "$prefix"/include/tavo/*.hpp; do
    "$cxx" -std=c++20 -Wall -Wextra -Wconversion -Wshadow -Werror -pedantic -I "$prefix/include" \
        -fsyntax-only -x c++ "$header"
done

for header in "$prefix"/include/tavo/*.h; do
    printf '#include <tavo/%s>\nint main(void) { return 0; }\n' "$(basename "$header")" |
        "$cc" -std=c99 -Wall -Wextra -Werror -pedantic -I "$prefix/include" -fsyntax-only -x c -
done

# The examples, over a lexicon of a few words.
example=$here/../../examples
mkdir "$folder/lexicon"
"$build/bin/tavo_make_world" "$folder/lexicon"
# shellcheck disable=SC2046
PKG_CONFIG_PATH=$pc "$cc" -std=c99 -Wall -Wextra -Werror "$example/analyze.c" -o "$folder/analyze" \
    $(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs tavo)
libdir=$(PKG_CONFIG_PATH=$pc pkg-config --variable=libdir tavo)
echo すもももの | iconv -f utf-8 -t cp932 | LD_LIBRARY_PATH=$libdir "$folder/analyze" "$folder/lexicon" | iconv -f cp932 -t utf-8 >"$folder/out"
grep -q '^すもも .*名詞.*スモモ$' "$folder/out"
test "$(wc -l <"$folder/out")" -eq 3
# Unknown letters are one word where the folder says so.
printf 'Number =\n' >"$folder/lexicon/reduce.rules"
printf 'Undef\n' >"$folder/lexicon/number.list"
echo abc | LD_LIBRARY_PATH=$libdir "$folder/analyze" "$folder/lexicon" >"$folder/out"
grep -q '^abc ' "$folder/out"
rm "$folder/lexicon/reduce.rules" "$folder/lexicon/number.list"
PYTHONPATH=$build/python TAVO_PATH=$folder/lexicon \
    /usr/bin/python3 -B "$example/analyze.py" すもももの >"$folder/out"
grep -q '^  0 すもも	名詞	スモモ$' "$folder/out"
test "$(wc -l <"$folder/out")" -eq 6

"$prefix/bin/tavo" --version
