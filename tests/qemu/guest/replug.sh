# The board is pulled and plugged in again, with a session for each action and in a session that stays open;
# where the system is late with configuring it; and where there is no udev.
connect_by_hand() {
  do_it "set frmI2C_General.Visible true"
  do_it "click frmI2C_General.ChKManUsbConn"
  do_it "click frmI2C_General.cmdUSBConnect"
  do_it "front frmKVT71346"
}
connect_anew() {
  do_it "click frmI2C_General.cmdUSBDisconnect"
  do_it "click frmI2C_General.cmdUSBConnect"
  do_it "front frmKVT71346"
}
access_works() {
  set_the_mode
  lamp_is "$green"
}
access_fails() {
  set_the_mode
  lamp_is "$red"
}
# What the session that stays open does after a re-plug: the panel's own transfers take the handle that a
# checked one has found.
checked_access_works() {
  do_it "click frmI2C_General.cmdRead"
  access_works
}
authorize_new_devices() { echo "$1" >/sys/bus/usb/devices/usb1/authorized_default; }
# udev has told of the board: its note of it is there beside those of the two root hubs.
is_told() {
  set -- /run/udev/data/c189:*
  [ $# -eq 3 ]
}

board mount KVT71346/7

topic "Without udev a session doesn't see the board come, and the next one does"
board plug
comes "the kernel sees the board" is_in
open_console root
choose_the_model
access_works
connect_by_hand
unplug
access_fails
board plug
comes "the kernel sees the board" is_in
access_fails
connect_anew
access_works
close_console
unplug

put_rule $project_rule
start_udev
sits 1000
plug
open_console engineer
choose_the_model
for time in 1 2 3; do
  topic "Re-plug $time, a session for each action"
  unplug
  access_fails
  plug
  access_works
done
connect_by_hand
for time in 1 2 3 4 5 6 7 8 9 10; do
  topic "Re-plug $time, in a session"
  unplug
  becomes store.Usb_Attached 0
  access_fails
  board plug
  becomes store.Usb_Attached -1
  checked_access_works
done

# The kernel configures no device that isn't authorized. From the first try on the program has half a second's
# patience, so nothing that takes time stands before the authorization.
topic "A board that is configured later"
unplug
becomes store.Usb_Attached 0
udevadm settle --timeout=10
authorize_new_devices 0
board plug
comes "udev tells of the board" is_told
ask "wait 20"
ask "get store.Usb_Attached"
echo 1 >$port/authorized
check "the program doesn't take it unconfigured" [ "$answer" = "ok 0" ]
becomes store.Usb_Attached -1
checked_access_works

check "nothing was to be advised" not_advised

topic "A board that isn't configured at all"
unplug
becomes store.Usb_Attached 0
do_it "set frmI2C_General.Txtlog.Text \"\""
plug
comes "the log tells that the board can't be used" log_has "DeviceAttach: WDU_SetInterface failed"
access_fails
echo 1 >$port/authorized
connect_anew
access_works
