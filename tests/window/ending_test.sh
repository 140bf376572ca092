#!/usr/bin/env bash
# ending_test.sh PROGRAM: the desktop program's end by a signal, and by the death of its X server.
set -euo pipefail
program=$1
number=$(mktemp)
Xvfb -displayfd 3 -screen 0 1366x768x24 -nolisten tcp -noreset 3>"$number" 2>/dev/null &
server=$!
trap 'kill $server 2>/dev/null || true; rm -f "$number"' EXIT
while [ ! -s "$number" ]; do kill -0 $server; done
export DISPLAY=":$(cat "$number")"
failed=0

# ended EXPECTED SIGNAL: the program's exit status after this signal, to it or to the X server.
ended() {
  local status=0
  QT_QPA_PLATFORM=xcb "$program" &
  local pid=$! whom=$!
  # The title has a dash that the locale C doesn't know. Read to its end, as a reader that goes early would fail the pipe.
  until LC_ALL=C.UTF-8 xwininfo -root -tree | grep 'Varzelin Light Sensor' >/dev/null; do kill -0 $pid; done
  [ "$2" != KILL ] || whom=$server
  kill -s "$2" $whom
  wait $pid || status=$?
  [ $status -eq "$1" ] || { echo "FAILED: exit status $status after $2"; failed=1; }
}
ended 143 TERM
ended 129 HUP
ended 1 KILL
exit $failed
