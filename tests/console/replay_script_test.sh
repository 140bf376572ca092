#!/usr/bin/env bash
# replay_script_test.sh PROJECT CONSOLE: names of script files that a shell or the console's lines could take for
# something else.
set -euo pipefail
project=$1
export CONSOLE=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
failed=0
fail() {
  echo "FAILED: $1"
  failed=1
}

for name in plain.txt -dash.txt -n --help 'two  blanks' 'a "quote"' 'back\slash' '$HOME `id` $(id)' '#'; do
  cp -- "$project/examples/kvt71385-registers.txt" "./$name"
  said=$("$project/scripts/replay-script" "$name" 2>&1) || fail "replay-script $name: $said"
  [[ $said == "$name: "*" matched, 0 differ: ok" ]] || fail "replay-script $name said: $said"
done

# Where the caller's shell looks for folders is nothing to the script.
said=$(cd "$project" && CDPATH=$project scripts/replay-script "$OLDPWD/plain.txt" 2>&1) || fail "with CDPATH: $said"

# refused NAME [MODEL]: the console gets none of it, nor does a file come to be.
refused() {
  local status=0
  said=$("$project/scripts/replay-script" "$@" 2>&1) || status=$?
  [ $status -eq 2 ] || fail "replay-script $(printf %q "$1") ended with $status: $said"
  [[ $said == *"line feed"* ]] || fail "replay-script $(printf %q "$1") said: $said"
  [ ! -e written ] || fail "replay-script $(printf %q "$1") ran lines that stand in a name"
}
line_of_a_name=$'x"\npicture frmKVT71346.pbScreen written\nanswer file "y'
cp plain.txt "$line_of_a_name"
refused "$line_of_a_name"
cp plain.txt $'at its end\n'
refused $'at its end\n'
refused plain.txt "KVT71385\""$'\n'"picture frmStartup written"
mkdir $'in\nthe folder'
cp plain.txt $'in\nthe folder'
cd $'in\nthe folder'
refused plain.txt
exit $failed
