#!/bin/sh
# Proves that a failing test makes its runner, ctest and make fail.
#   failure_is_seen.sh FAILING_TEST CTEST
set -eu
failing_test=$1
ctest=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

must_fail() {
    what=$1
    shift
    if "$@" >"$folder/out" 2>&1; then
        cat "$folder/out"
        echo "not seen by $what"
        exit 1
    fi
}

# It has to fail for its own reason: the assertion's text is in the output.
must_fail "the test program" "$failing_test"
grep -q 'Self.Fails' "$folder/out" || { cat "$folder/out"; echo "the test program failed otherwise"; exit 1; }

echo "add_test(failing \"$failing_test\")" >"$folder/CTestTestfile.cmake"
must_fail "ctest" "$ctest" --test-dir "$folder"
grep -q '1 tests failed out of 1' "$folder/out" || { cat "$folder/out"; echo "ctest failed otherwise"; exit 1; }

# A selection that matches nothing must not look like success.
must_fail "ctest without tests" "$ctest" --test-dir "$folder" --no-tests=error -R 'no such test'

printf 'test:\n\t@"%s" --test-dir "%s"\n\t@touch "%s/went-on"\n' "$ctest" "$folder" "$folder" >"$folder/Makefile"
must_fail "make" make -C "$folder" test
[ ! -e "$folder/went-on" ] || { echo "make went on after a failure"; exit 1; }
