#!/bin/sh
# options_test.sh PROGRAM...: what the desktop programs answer to the words of their command line, without a display.
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM
failed=0
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# begins FILE WORDS: they stand in its first line; none: it is empty.
begins() {
  if [ -z "$2" ]; then [ ! -s "$1" ]; else head -n 1 "$1" | grep -qF -- "$2"; fi
}
# expect STATUS OUTPUT ERRORS ARGUMENT...: the exit status, and how standard output and standard error begin.
expect() {
  status=$1 output=$2 errors=$3
  shift 3
  got=0
  "$program" "$@" >"$folder/output" 2>"$folder/errors" </dev/null || got=$?
  if [ $got != "$status" ] || ! begins "$folder/output" "$output" || ! begins "$folder/errors" "$errors"; then
    echo "FAILED: $program $*: status $got, not $status"
    cat "$folder/output" "$folder/errors"
    failed=1
  fi
}

for program; do
  name=$(basename "$program")
  expect 0 "Usage: $name [--help | --version]" '' --help
  expect 0 "$name 5.4.1" '' --version
  expect 2 '' "$name: \"--quiet\" is not taken. --help tells what is." --quiet
  expect 2 '' "$name: \"-h\" is not taken." -h
  expect 2 '' "$name: \"\" is not taken." ''
  expect 2 '' "$name: \"-platform\" is not taken." -platform offscreen
  expect 2 '' "$name: \"more\" is not taken." --help more
  expect 2 '' "$name: \"--help\" is not taken." --version --help
  expect 1 '' 'There is no display here. varzelin-als-console is the whole program without windows.'
done
exit $failed
