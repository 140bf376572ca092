# What the journeys share: the board's plug, udev, the console program of a user, and the steps' results.
green='ok "#00FF00"' red='ok "#FF0000"' # a lamp
console=0 # process number of the console program; 0: none runs
failures=0

# ---- Results

topic() { echo "-- $(cut -d ' ' -f 1 /proc/uptime) s: $1"; }
passed() { echo "passed: $1"; }
failed() {
  echo "FAILED: $1"
  failures=$((failures + 1))
}
# check WHAT COMMAND...: the command has to succeed.
check() {
  what=$1
  shift
  if "$@"; then passed "$what"; else failed "$what ($*)"; fi
}
matches() { case "$1" in $2) ;; *) return 1 ;; esac; } # TEXT PATTERN
lacks() { ! matches "$@"; }
end_journey() {
  [ $console -eq 0 ] || close_console
  [ $failures -eq 0 ] || dmesg | tail -n 20
  echo "The journey is over, with $failures failures"
}

# ---- The board: see board_server.cpp for the commands

stty -F /dev/ttyS1 raw -echo
exec 5<>/dev/ttyS1
board() {
  echo "$*" >&5
  read -r -t 10 answer <&5
  [ "$answer" = ok ] || failed "board $* ($answer)"
}
port=/sys/bus/usb/devices/1-1
# comes WHAT COMMAND...: the command has to succeed within five seconds.
comes() {
  what=$1
  shift
  for _ in $(seq 500); do
    "$@" && return
    usleep 10000
  done
  failed "$what"
}
tagged() { udevadm info --query=property --property=TAGS --value --path=$port | grep -q :uaccess:; }
is_in() { [ -e $port/idVendor ]; }
is_out() { [ ! -e $port ]; }
# Plugs in and waits until udev has taken note of it, and then until it has done all that its rules say.
plug() {
  board plug "$@"
  udevadm wait --timeout=10 --settle $port || failed "udev is done with the board"
}
unplug() {
  board unplug
  comes "the kernel misses the board" is_out
}

# ---- udev

# A rule that it is to know from the start has to be there before.
start_udev() {
  /lib/systemd/systemd-udevd --daemon
  udevadm trigger --action=add --subsystem-match=usb
  udevadm wait --timeout=10 --settle /sys/bus/usb/devices/usb1 /sys/bus/usb/devices/usb2 ||
    failed "udev is up"
}
put_rule() { cp "$1" /etc/udev/rules.d/70-varzelin-als.rules; }
project_rule=/guest/70-varzelin-als.rules
# Who sits at the machine, as logind writes it down for udev. Without a number: nobody.
sits() {
  mkdir -p /run/systemd/seats
  printf 'ACTIVE=1\nACTIVE_UID=%s\n' "$1" >/run/systemd/seats/seat0
}
nobody_sits() { : >/run/systemd/seats/seat0; }

# ---- The console program

open_console() { # USER
  rm -rf /tmp/console
  mkdir -m 777 /tmp/console
  mkfifo -m 666 /tmp/console/in /tmp/console/out
  su "$1" -c 'exec varzelin-als-console --board usb' \
    </tmp/console/in >/tmp/console/out 2>/tmp/console/advice &
  console=$!
  exec 3>/tmp/console/in 4</tmp/console/out
}
close_console() {
  ask quit
  exec 3>&- 4<&-
  wait $console
  console_status=$?
  console=0
}
# Sends a line; `answer` is its answer.
ask() {
  echo "$1" >&3
  while read -r -t 30 answer <&4; do
    case "$answer" in '* '*) echo "$answer" ;; *) return ;; esac
  done
  answer="no answer"
}
# expect LINE PATTERN: the answer has to be like that.
expect() {
  ask "$1"
  if matches "$answer" "$2"; then passed "$1 -> $2"; else failed "$1 -> $2, but: $answer"; fi
}
do_it() { expect "$1" ok; }
choose_the_model() { do_it "click frmStartup.cboDeviceSelect 0"; }
set_the_mode() { do_it "click frmKVT71346.cmdSetMode"; }
lamp_is() { expect "get frmKVT71346.ShpAttach.FillColor" "$1"; }
log_has() {
  ask "get frmI2C_General.Txtlog.Text"
  matches "$answer" "*$1*"
}
# In what the program told the user on standard error.
advised() { grep -qF "$1" /tmp/console/advice; }
# Nothing but that the plug is out.
not_advised() { ! grep -v 'The board was unplugged\|No board is plugged in' /tmp/console/advice; }
# becomes NAME PATTERN: a property gets such a value within five seconds of the program's running on.
becomes() {
  for _ in $(seq 500); do
    ask "get $1"
    matches "$answer" "ok $2" && passed "$1 becomes $2" && return
    ask "wait 10"
  done
  ask "get $1"
  failed "$1 becomes $2, but: $answer"
}
