#!/usr/bin/env bash
# clean_system_test.sh PROJECT CACHE: the package's life in a clean system of this machine's Debian: installed with
# nothing but what it depends on, worked with by an ordinary user on the X server $DISPLAY, removed without a trace.
# The exit status is 77 where no such system can be made.
set -euo pipefail
project=$1 cache=$2
package=varzelin-als-demonstration
skip() { echo "skipped: $1"; exit 77; }
fail() { echo "FAILED: $1"; exit 1; }

# The system lives in memory, and it and its processes go with the namespaces that this script runs in.
if [ "${3:-}" != "inside" ]; then
  [ "$(id -u)" -eq 0 ] || skip "only root can make a clean system"
  for tool in debootstrap zstd xwininfo xprop appstreamcli desktop-file-validate; do
    command -v "$tool" >/dev/null || skip "$tool is not installed"
  done
  namespaces=(unshare --mount --pid --fork --kill-child --mount-proc)
  "${namespaces[@]}" mount -t tmpfs none /mnt 2>/dev/null || skip "this machine refuses namespaces and mounts"
  "${namespaces[@]}" "$0" "$@" inside
  exit
fi
shift $#
debs=("$project"/build/release/"$package"_*.deb)
deb=${debs[0]}
root=$cache/root
mkdir -p "$root"
mount -t tmpfs -o mode=755 none "$root"

in_system() {
  chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
}
as_visitor() {
  exec chroot --userspec=visitor:visitor "$root" env -i PATH=/usr/bin:/bin LC_ALL=C.UTF-8 DISPLAY="$DISPLAY" \
    HOME=/tmp/visitor XDG_RUNTIME_DIR=/tmp/visitor "$@"
}

# A minimal system with the package's dependencies and nothing else, from where this machine has its packages.
make_system() {
  local suite mirror http_proxy
  suite=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
  mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Identifier: Packages' "Codename: $suite" 'Component: main' |
           sed -n 1p)
  eval "$(apt-config shell http_proxy Acquire::http::Proxy)"
  if [ -n "${http_proxy:-}" ]; then export http_proxy; fi
  debootstrap --variant=minbase "$suite" "$root" "$mirror" > "$cache/debootstrap.log" 2>&1 ||
    skip "debootstrap can't make a clean system: $(tail -n 1 "$cache/debootstrap.log")"
  rm -f "$root/etc/apt/sources.list"
  cp -r /etc/apt/sources.list* /etc/apt/trusted.gpg.d "$root/etc/apt/"
  if [ -d /etc/apt/keyrings ]; then cp -r /etc/apt/keyrings "$root/etc/apt/"; fi
  cp -n /usr/share/keyrings/* "$root/usr/share/keyrings/"
  apt-config dump | grep -E '^Acquire::(http|https|Check-)' > "$root/etc/apt/apt.conf.d/host" || true
  for file in /etc/resolv.conf /etc/hosts; do
    [ ! -e $file ] || cp -L $file "$root/etc/"  # a minimal system may lack the second
  done
  in_system useradd visitor
  {
    in_system apt-get -qq update &&
    in_system apt-get -qq --no-install-recommends -y satisfy "$(dpkg-deb -f "$deb" Depends)" &&
    in_system apt-get clean
  } > "$cache/satisfy.log" 2>&1 || fail "the package's dependencies can't be had: $(tail -n 5 "$cache/satisfy.log")"
  find "$root/var/lib/apt/lists" -type f -delete
}
# Its name tells what it was made from.
made_from=$({ dpkg-deb -f "$deb" Depends; sed -n '/^make_system/,/^}/p' "$0"; } | sha256sum | cut -c 1-12)
saved=$cache/$made_from.tar.zst
if [ -f "$saved" ]; then
  tar -C "$root" -xf "$saved"
else
  make_system
  rm -f "$cache"/*.tar.zst
  tar -C "$root" -cf "$saved.part" -I 'zstd -1 -T0' --one-file-system .
  mv "$saved.part" "$saved"
fi
mount -t proc none "$root/proc"
mount -t tmpfs -o mode=1777 none "$root/tmp"
mkdir "$root/tmp/.X11-unix"
mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"
in_system install -d -o visitor -g visitor -m 700 /tmp/visitor
cp "$deb" "$root/tmp/package.deb"

# An udev that runs, as far as the package's scripts see, and writes down what it's told.
mkdir -p "$root/run/udev"
touch "$root/run/udev/control"
printf '#!/bin/sh\necho "$*" >> /tmp/udevadm.calls\n' > "$root/usr/bin/udevadm"
chmod 755 "$root/usr/bin/udevadm"
expect_udev_told() {
  local calls expected="control --reload
trigger --action=change --subsystem-match=usb --attr-match=idVendor=7a53 --attr-match=idProduct=2005"
  calls=$(cat "$root/tmp/udevadm.calls" 2>/dev/null || true)
  [ "$calls" = "$expected" ] || fail "$1, udev was told: $calls"
  rm "$root/tmp/udevadm.calls"
}

# Everything in the system. Of a folder neither size nor time, which change with what comes and goes in it.
list_files() {
  find "$root" -xdev \( -type d -printf '%P %y %m %u\n' -o -printf '%P %y %m %u %s %T@ %l\n' \) | sort
}

# --- Installed as a person does it
list_files > "$cache/before"
in_system apt-get -y --no-install-recommends install /tmp/package.deb > "$cache/install.log" 2>&1 ||
  fail "not installed: $(cat "$cache/install.log")"
grep -q '^0 upgraded, 1 newly installed, 0 to remove' "$cache/install.log" ||
  fail "more than the package was installed: $(cat "$cache/install.log")"
expect_udev_told "At its installation"
grep -q 'ATTR{idVendor}=="7a53", ATTR{idProduct}=="2005", TAG+="uaccess"' "$root"/usr/lib/udev/rules.d/*-varzelin-als.rules ||
  fail "no udev rule for the board"
share=$root/usr/share
desktop-file-validate "$share"/applications/*.desktop || fail "the menu entries"
"$(dirname "$0")"/metainfo_test.sh "$share"/metainfo/*.xml > "$cache/metainfo.log" || fail "$(cat "$cache/metainfo.log")"

# --- Worked with by an ordinary user, from the menu
window_of_class() {
  LC_ALL=C.UTF-8 xwininfo -root -tree | sed -n "s/^ *\(0x[0-9a-f]*\) \"Varzelin .*(\"$1\" .*/\1/p" | sed -n 1p
}
entries=("$share"/applications/*.desktop)
[ ${#entries[@]} -eq 2 ] || fail "menu entries: ${entries[*]}"
for entry in "${entries[@]}"; do
  value() { sed -n "s/^$1=//p" "$entry"; }
  icons=("$share"/icons/hicolor/*/apps/"$(value Icon)".*)
  [ -e "${icons[0]}" ] || fail "no icon $(value Icon)"
  (as_visitor $(value Exec)) > "$cache/window.log" 2>&1 &
  program=$!
  deadline=$((SECONDS + 60))
  until window=$(window_of_class "$(value StartupWMClass)") && [ -n "$window" ] &&
        xwininfo -id "$window" | grep -q 'Map State: IsViewable'; do
    kill -0 "$program" 2>/dev/null || fail "$(value Exec) ended: $(cat "$cache/window.log")"
    [ $SECONDS -lt $deadline ] || fail "$(value Exec) shows no window: $(xwininfo -root -tree; cat "$cache/window.log")"
  done
  [ "$(readlink "/proc/$program/exe")" = "$root/usr/bin/$(value Exec)" ] || fail "another program runs"
  [ "$(stat -c %u "/proc/$program")" -ne 0 ] || fail "$(value Exec) runs as root"
  echo "On screen for an ordinary user: $(xprop -id "$window" -notype 8u _NET_WM_NAME)"
  kill "$program"
  wait "$program" || true
done

installed=$(in_system dpkg-query -W -f '${Version}' "$package")
[ "$(as_visitor varzelin-als-console --version)" = "varzelin-als-console $installed" ] ||
  fail "the program isn't of the package's version $installed"
(as_visitor sh -c "cd && varzelin-als-console < /usr/share/doc/$package/examples/collect.session > answers") ||
  fail "the session on the console ended with $?"
cd "$root/tmp/visitor"
if grep -E '^error|^\* runtime-error' answers || [ ! -s Data.txt ] || [ ! -s chart.ppm ]; then
  fail "the session on the console: $(cat answers)"
fi
echo "Session on the console: $(grep -c '^ ' Data.txt) samples"
cd /

# --- Removed
in_system apt-get -y purge "$package" > "$cache/purge.log" 2>&1 || fail "not removed: $(cat "$cache/purge.log")"
expect_udev_told "At its removal"
list_files > "$cache/after"
# dpkg's and apt's own: what they did, and what they know.
own='var/log/dpkg\.log|var/log/apt/(history|term)\.log|var/log/apt/eipp\.log\.xz|var/lib/dpkg/status(-old)?'
own+='|var/lib/dpkg/(lock|triggers/Lock)|var/lib/apt/extended_states|var/cache/apt/(src)?pkgcache\.bin'
changed=$(diff "$cache/before" "$cache/after" | sed -n '/^[<>]/p' | grep -vE "^[<>] ($own) f " || true)
[ -z "$changed" ] || fail "what the system had before (<) and has after (>) the package: $changed"
echo "Removed: no file of it is left"
