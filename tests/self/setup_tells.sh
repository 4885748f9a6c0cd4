#!/bin/sh
# Proves that scripts/setup names the packages that are missing, and those alone, before it
# installs anything, and that make calls it nowhere past SETUP.
#   setup_tells.sh SOURCE
set -eu
source=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# A system that has every package but those of $absent; apt-get tells of itself.
# $absent, $1 and the rest are for the programs written here:
# shellcheck disable=SC2016
{
    printf '#!/bin/sh\nshift 2\nfor each; do case " $absent " in *" $each "*) ;; *) echo "installed $each" ;; esac; done\n' >"$folder/dpkg-query"
    printf '#!/bin/sh\nfor each; do last=$each; done\necho "apt-get ... $last"\n' >"$folder/apt-get"
    printf '#!/bin/sh\nexec "$@"\n' >"$folder/sudo"
    printf '#!/bin/sh\necho 0\n' >"$folder/id"
}
chmod +x "$folder"/*
setup() { PATH="$folder:$PATH" absent=$1 "$source/scripts/setup" test >"$folder/out"; }

setup 'cmake python3-pytest shellcheck'
{
    echo 'setup: about to install these Debian packages, which the file packages lists (SETUP=: installs none):'
    printf '  %s\n' cmake python3-pytest
    printf 'apt-get ... %s\n' update python3-pytest
} | diff - "$folder/out"
setup ''
[ ! -s "$folder/out" ] || { cat "$folder/out"; exit 1; }

for target in demo build lexicon install test; do
    PATH="$folder:$PATH" absent=cmake make -n -C "$source" SETUP='echo instead of setup' "$target" >"$folder/out"
    grep -q '^echo instead of setup' "$folder/out" || { echo "$target leaves SETUP out"; exit 1; }
    if grep -q 'scripts/setup' "$folder/out"; then echo "$target installs in spite of SETUP"; exit 1; fi
done
