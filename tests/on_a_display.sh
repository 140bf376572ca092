#!/bin/sh
# on_a_display.sh COMMAND...: runs the command on an X server of its own. The server picks its number
# itself, so several runs never meet on one; a server that goes takes its socket along, so its end is waited for.
number=$(mktemp)
Xvfb -displayfd 3 -screen 0 1366x768x24 -nolisten tcp 3>"$number" 2>/dev/null &
server=$!
trap 'kill $server; wait $server; rm -f "$number"' EXIT
while [ ! -s "$number" ]; do
  kill -0 $server || exit 1
done
DISPLAY=":$(cat "$number")" "$@"
