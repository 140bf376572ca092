#!/bin/sh
# The console program itself: exit statuses, standard output and standard error.
# usage: program_test.sh PROGRAM
program=$1
failed=0

# expect STATUS STDOUT INPUT ARGUMENT...
expect() {
  status=$1 output=$2 input=$3
  shift 3
  got=$(printf "$input" | "$program" "$@" 2>"$errors")
  got_status=$?
  if [ "$got_status" != "$status" ] || [ "$got" != "$(printf "$output")" ]; then
    echo "FAILED: $program $*: status $got_status, not $status; output: $got"
    failed=1
  fi
}
# The last program wrote this many lines on standard error.
expect_errors() {
  if [ "$(wc -l <"$errors")" != "$1" ]; then
    echo "FAILED: standard error is: $(cat "$errors")"
    failed=1
  fi
}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
errors=$folder/errors

expect 0 'ok true\nok' 'get frmStartup.Visible\nquit\nget frmStartup.Visible\n'
expect_errors 0
expect 0 '' ''
expect 0 'ok\n* ended' 'close frmStartup\nforms\n'
expect 0 'ok false\nok' '\r\n# comment\r\nget frmAbout2.Loaded\r\nwait 5\n' --clock real
expect 0 'ok\nerror no end of line: wait 5' 'wait 5\nwait 5'
expect 0 'ok' 'wait 5\n#' --clock real
expect 0 'ok' 'wait 5\n' --board simulated --clock virtual
expect 0 'varzelin-als-console 5.4.1' '' --version
expect_errors 0
for arguments in '--board usb --clock virtual' '--clock virtual --board usb' '--board' '--clock sun' '--quiet' run; do
  expect 2 '' 'quit\n' $arguments
  expect_errors 1
done
expect 0 'ok' 'quit\n' --board usb

recording=$folder/recording
choose='click frmStartup.cboDeviceSelect 0\nget frmKVT71346.Visible\n'
expect 0 'ok\nok true' "$choose" --record "$recording"
expect 0 'ok\nok true\nerror no simulated board' "$choose"'board clear\n' --board "replay=$recording"
expect_errors 0
expect 3 'ok' 'quit\n' --board "replay=$recording"
expect_errors 1
sed -i /WDU_ResetDevice/d "$recording"
expect 3 'ok\nok true' "$choose" --board "replay=$recording"
expect_errors 1
expect 1 '' 'quit\n' --board "replay=$recording/none"
expect_errors 1
expect 1 '' 'quit\n' --record "$recording/none"
expect_errors 1
# A file that a recording replaces stays beside it until the recording is whole.
expect 0 'ok\nok true' "$choose" --record "$recording"
expect 0 'ok\nok true' "$choose" --record "$recording"
cp "$recording" "$folder/good"
ls "$folder" | grep -q '~' && { echo "FAILED: left: $(ls "$folder")"; failed=1; }
(ulimit -f 1 && expect 3 'ok\nok true' "$choose" --record "$recording" && exit $failed) || failed=1
grep -q "is in $recording~\$" "$errors" || { echo "FAILED: nothing says where it is: $(cat "$errors")"; failed=1; }
cmp "$recording~" "$folder/good" || failed=1
ln "$folder/good" "$folder/its-link"
expect 2 '' 'quit\n' --board "replay=$folder/good" --record "$folder/its-link"
expect_errors 1
cmp "$recording~" "$folder/good" || failed=1
expect 0 'ok\nok true' "$choose" --board "replay=$folder/good" --record "$folder/again"
expect 0 'ok' 'quit\n' --record /dev/null
mkfifo "$folder/pipe"
cat "$folder/pipe" >"$folder/came" &
expect 0 'ok\nok true' "$choose" --record "$folder/pipe"
wait
cmp "$folder/came" "$folder/good" || failed=1
(
  head -c 1 "$folder/pipe" >/dev/null
  touch "$folder/gone"
) &
{
  until [ -e "$folder/gone" ]; do :; done
  printf "$choose"
} | "$program" --record "$folder/pipe" >/dev/null 2>"$errors"
status=$?
[ $status = 3 ] || { echo "FAILED: a reader that goes: status $status"; failed=1; }
expect_errors 1

printf 'what\033[2Jis\007this\n' >"$recording"
expect 1 '' 'quit\n' --board "replay=$recording"
expect_errors 1
grep -q '"what\\x1B\[2Jis\\x07this" is not the head of one' "$errors" || { echo "FAILED: $(cat "$errors")"; failed=1; }

# Nobody gets the answers: no room, and nobody there.
printf 'clock\nclock\nclock\n' | "$program" >/dev/full 2>"$errors"
[ $? = 1 ] || { echo 'FAILED: status with a full device'; failed=1; }
expect_errors 1
{ yes clock | "$program" 2>"$errors"; echo $? >"$recording"; } | head -n 1 >/dev/null
[ "$(cat "$recording")" = 1 ] || { echo "FAILED: status with a closed pipe: $(cat "$recording")"; failed=1; }
expect_errors 1

for option in --help --version; do
  "$program" $option >/dev/full 2>"$errors"
  [ $? = 1 ] || { echo "FAILED: status of $option with a full device"; failed=1; }
  expect_errors 1
done

# Begun without standard input, output or error, it takes none of its own files for them.
timeout 60 "$program" <&- >"$recording" 2>"$errors" || { echo "FAILED: status $? without standard input"; failed=1; }
[ ! -s "$recording" ] || { echo "FAILED: without standard input: $(cat "$recording")"; failed=1; }
printf "$choose" | timeout 60 "$program" --record "$folder/again" >&- 2>"$errors"
[ $? = 1 ] || { echo 'FAILED: status without standard output'; failed=1; }
printf "$choose" | "$program" --record "$recording" >/dev/null 2>&-
cmp "$recording" "$folder/good" || failed=1

"$program" --help </dev/null | grep -q '^usage: varzelin-als-console ' || { echo 'FAILED: --help'; failed=1; }
exit $failed
