#!/bin/sh
# on_a_display.sh COMMAND...: runs the command on an X server of its own. The server picks its number
# itself, so several runs never meet on one. Its end is waited for, because it takes its socket along.
# Without -noreset it would start anew when its last client goes, and refuse others meanwhile.
number=$(mktemp)
Xvfb -displayfd 3 -screen 0 1366x768x24 -nolisten tcp -noreset 3>"$number" 2>/dev/null &
server=$!
trap 'kill $server; wait $server; rm -f "$number"' EXIT
while [ ! -s "$number" ]; do
  kill -0 $server || exit 1
done
DISPLAY=":$(cat "$number")" "$@"
