# Who may open the board: nobody but root without the project's rule; with it who sits at the machine, or, in
# the other form that the documents tell of, a group.
refused() { # USER
  open_console "$1"
  choose_the_model
  lamp_is "$red"
  check "$1 is told that access is denied" advised "Access denied (insufficient permissions)"
  close_console
}
let_in() { # USER
  open_console "$1"
  choose_the_model
  set_the_mode
  lamp_is "$green"
  check "$1 is told nothing" not_advised
  close_console
}
# On a busy computer udevd drops a word now and then that comes before it has asked who says it ("Invalid sender
# uid"), so it is told more than once.
tell_udev_of_rules() { for _ in 1 2 3 4 5; do udevadm control --reload; done; }
install_rule() {
  put_rule "$1"
  tell_udev_of_rules
}
configure_package() {
  for _ in 1 2 3 4 5; do sh /guest/postinst configure; done
  comes "udev has looked at the board" tagged
  udevadm wait --timeout=10 --settle $port
}
not_tagged() { ! tagged; }

start_udev
board mount KVT71346/7
sits 1000

topic "Without the rule"
plug
check "the board has no tag" not_tagged
open_console engineer
choose_the_model
set_the_mode
lamp_is "$red"
expect "get frmKVT71346.Visible" "ok true"
check "it is logged" log_has "Access denied (insufficient permissions)"
check "the advice names the rule's command" advised \
  "sudo cp data/70-varzelin-als.rules /etc/udev/rules.d/ && sudo udevadm control --reload"
check "the advice comes once" [ "$(wc -l </tmp/console/advice)" -eq 1 ]

topic "As the advice says, while the program runs on"
install_rule $project_rule
unplug
plug
check "the board is tagged" tagged
set_the_mode
lamp_is "$green"
close_console

topic "Another user"
refused visitor

topic "Another device"
unplug
plug 2006
check "the device has no tag" not_tagged

topic "Nobody sits at the machine"
unplug
nobody_sits
plug
check "the board is tagged" tagged
refused engineer

topic "The group's rule"
unplug
sed 's/TAG+="uaccess"/MODE="0660", GROUP="plugdev"/' $project_rule >/tmp/group.rules
check "the rule is another one" grep -q plugdev /tmp/group.rules
install_rule /tmp/group.rules
plug
refused engineer
let_in visitor

topic "The package's rule, for a board that is plugged in already"
unplug
rm /etc/udev/rules.d/*
tell_udev_of_rules
sits 1000
plug
check "the board has no tag" not_tagged
refused engineer
put_rule $project_rule
configure_package
check "the board is tagged" tagged
let_in engineer
