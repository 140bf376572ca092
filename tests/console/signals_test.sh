#!/usr/bin/env bash
# signals_test.sh PROGRAM: a signal ends the console as its user would, in the middle of a collection and idle, and
# leaves its recording whole.
set -euo pipefail
program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
failed=0
fail() {
  echo "FAILED: $1"
  failed=1
}

# ended_by SIGNAL CLOCK LINE...: the program gets the signal when it has answered these lines.
ended_by() {
  local signal=$1 clock=$2 status=0 case="$*" answer last=
  shift 2
  echo earlier > "$folder/recording"
  coproc { exec env --default-signal=INT "$program" --clock "$clock" --record "$folder/recording"; }
  local pid=$COPROC_PID answers=${COPROC[0]}
  for line in "$@"; do
    echo "$line" >&"${COPROC[1]}"
    read -r answer <&"$answers"
    [ "$answer" = ok ] || fail "$case: $answer"
  done
  kill -s "$signal" "$pid"
  while read -r answer; do last=$answer; done <&"$answers"
  wait "$pid" || status=$?
  [ $status -eq $((128 + $(kill -l "$signal"))) ] || fail "$case: exit status $status"
  [ "$last" = '* ended' ] || fail "$case: last said: $last"
  [ ! -e "$folder/recording~" ] || fail "$case: the recording isn't whole"
  grep -q 'WDU_VB_Uninit' "$folder/recording" || fail "$case: the session isn't closed"
}
choose='click frmStartup.cboDeviceSelect 0'
connect='event frmI2C_General.cmdUSBConnect Click'
collect='start click frmKVT71346.cmdCollectData'
for clock in virtual real; do
  for signal in TERM INT HUP; do
    ended_by $signal $clock "$choose" "$collect"
  done
  ended_by TERM $clock "$choose" 'set frmI2C_General.ChKManUsbConn.Value 1' "$connect"
done
exit $failed
