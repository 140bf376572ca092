# A user at work: readings in real time, the data file, and what goes wrong with a transfer.
put_rule $project_rule
start_udev
sits 1000
board mount KVT71346/7
plug

panel=frmKVT71346
# Collects until a reading comes. The first are zero: the sensor's conversion takes its time.
collect_a_reading() {
  do_it "fill $panel.txtReading \"\""
  do_it "start click $panel.cmdCollectData"
  becomes $panel.txtReading.Text '"5100"'
  lamp_is "$green"
  do_it "click $panel.cmdStopData"
  do_it "finish 5000"
}
# A collection that ends by itself: its last transfer has this status.
collect_until_status() { # STATUS
  ask packets
  do_it "start click $panel.cmdCollectData"
  do_it "finish 5000"
  ask packets
  last=${answer##*\"status\":}
  check "the last transfer's status is $1" [ "${last%%,*}" = "$1" ]
  lamp_is "$red"
  expect "get store.Sample_Run" "ok 0"
}
milliseconds() {
  ask clock
  answer=${answer#ok }
  echo "${answer%.*}"
}

topic "Readings in real time, and the data file"
open_console engineer
choose_the_model
expect "get $panel.Visible" "ok true"
check "it is logged" log_has "DeviceAttach: Received and accepted attach for"
do_it "click $panel.Lst71346_Mode 2"
expect "get $panel.txtModeByte.Text" 'ok "00"'
ask packets
do_it "start click $panel.cmdCollectData"
becomes store.Sample_Count "2[1-9]"
expect "get $panel.txtReading.Text" 'ok "5100"'
lamp_is "$green"
do_it "click $panel.cmdStopData"
do_it "finish 5000"
expect "get store.Sample_Run" "ok 0"
ask packets
check "there were transfers" matches "$answer" '*"status":0,*'
check "none of them failed" lacks "$answer" '*"status":-*'
do_it "fill $panel.txtFilePath /tmp/Data.txt"
do_it "click $panel.cmdStartRec(0)"
check "the data file has the readings" grep -q 5100 /tmp/Data.txt

topic "The plug is pulled while a transfer is under way"
board pull-within 2
collect_until_status -4
check "it is logged" log_has "DeviceDetach: Received detach for device handle &H"
plug
collect_a_reading

topic "A transfer that times out"
board hang 82
before=$(milliseconds)
collect_until_status -7
check "it takes the time-out, and no longer" [ $(($(milliseconds) - before)) -lt 4000 ]
collect_a_reading

topic "A stall"
board stall 82
collect_until_status -9
collect_a_reading

topic "A reply that is too long"
board reply 02 EC 13 00 00 00 00 00
collect_until_status -8
collect_a_reading
check "nothing was to be advised" not_advised

topic "Another program"
do_it "set frmI2C_General.Visible true"
do_it "click frmI2C_General.ChKManUsbConn"
do_it "click frmI2C_General.cmdUSBConnect"
set_the_mode
echo "click frmStartup.cboDeviceSelect 0" |
  su engineer -c 'varzelin-als-console --board usb' >/dev/null 2>/tmp/second
check "it is told who holds the board" grep -q "Resource busy. Another program holds the board" /tmp/second
set_the_mode
lamp_is "$green"
