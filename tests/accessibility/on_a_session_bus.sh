#!/bin/sh
# on_a_session_bus.sh COMMAND...: runs the command on a session bus and an X server of its own, with the accessibility
# bus that the session starts. 77: what that takes isn't there.
for program in dbus-run-session Xvfb; do
  command -v "$program" >/dev/null || { echo "skipped: $program is not installed"; exit 77; }
done
[ -e /usr/share/dbus-1/services/org.a11y.Bus.service ] || { echo "skipped: at-spi2-core is not installed"; exit 77; }
XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
dbus-run-session -- sh "$(dirname "$0")/../on_a_display.sh" "$@"
