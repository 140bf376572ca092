#!/usr/bin/env bash
# A user at the console on the USB board, in real time: readings, the data file, a pulled plug, the plug put
# back, two boards.
# usage: console_journey_test.sh PRELOAD WITH-EMULATED-BOARDS CONSOLE
set -uo pipefail
preload=$1 with_boards=$2 console=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
failed=0
panel=frmKVT71346

open_console() { # BOARDS
  coproc program { exec env LD_PRELOAD="$preload" "$with_boards" "$1" "$console" --board usb --clock real 2>errors; }
  rig=$program_PID
}
ask() {
  echo "$1" >&"${program[1]}"
  answer='* note'
  while [[ $answer == '* '* ]]; do read -r -t 60 answer <&"${program[0]}" || answer="nothing within a minute"; done
}
expect() { # COMMAND ANSWER
  ask "$1"
  [[ $answer == $2 ]] && return
  echo "FAILED: $1: $answer, not $2"
  failed=1
}
becomes() { # NAME VALUE
  for _ in {1..200}; do
    ask "get $1"
    [[ $answer == "ok "$2 ]] && return
    ask "wait 50"
  done
  echo "FAILED: $1 is $answer and doesn't become $2"
  failed=1
}
collect_until_a_reading() {
  expect "fill $panel.txtReading 0" ok
  expect "start click $panel.cmdCollectData" ok
  becomes $panel.txtReading.Text '"5100"'
}
# The plug of the first board: pulled, or put back.
turn_plug() { # WORDS
  kill -USR1 "$rig"
  for _ in {1..200}; do
    grep -q "$1" errors && return
    ask "wait 20"
  done
  echo "FAILED: the board isn't $1"
  failed=1
}
leave() {
  echo quit >&"${program[1]}"
  wait "$rig"
  status=$?
  [ $status = 0 ] || { echo "FAILED: the console ended with $status" && failed=1; }
}

open_console 1
expect "click frmStartup.cboDeviceSelect 0" ok
expect "get $panel.Visible" "ok true"
expect "board light 100" "error no simulated board"
expect "click $panel.Lst71346_Mode 2" ok
collect_until_a_reading
becomes store.Sample_Count "2[0-9]"
expect "click $panel.cmdStopData" ok
expect "finish 5000" ok
expect "get $panel.ShpAttach.FillColor" 'ok "#00FF00"'
expect packets 'ok *"data":"00 88 00","status":0*'
expect "fill $panel.txtFilePath Data.txt" ok
expect "click $panel.cmdStartRec(0)" ok
grep -q 5100 Data.txt || { echo "FAILED: no reading in the data file" && failed=1; }

collect_until_a_reading
turn_plug "pulled"
expect "finish 10000" ok
expect "get store.Sample_Run" "ok 0"
expect "get $panel.ShpAttach.FillColor" 'ok "#FF0000"'
becomes frmI2C_General.Txtlog.Text "*DeviceDetach: Received detach for device handle*"
turn_plug "plugged in"
collect_until_a_reading
expect "click $panel.cmdStopData" ok
expect "finish 5000" ok
leave
[ "$(grep varzelin-als-console errors | cut -d . -f 1)" = "varzelin-als-console: The board was unplugged" ] ||
  { echo "FAILED: it advised: $(cat errors)" && failed=1; }

open_console 2
expect "click frmStartup.cboDeviceSelect 0" ok
expect "get frmI2C_General.Txtlog.Text" "*2 boards are plugged in. The program works with the first one, on bus 1, device 2*"
leave
grep -q "2 boards are plugged in" errors || { echo "FAILED: two boards weren't told: $(cat errors)" && failed=1; }
exit $failed
