#!/usr/bin/env bash
# modes_test.sh PROJECT: what the package holds can be read by everybody and written by root alone, whatever the
# umask of the one who made it, and so can the package.
set -euo pipefail
package=varzelin-als-demonstration
debs=("$1"/build/release/"$package"_*.deb)
deb=${debs[0]}
failed=0
[ "$(stat -c %a "$deb")" = 644 ] || { echo "FAILED: $(ls -l "$deb")"; failed=1; }

while read -r mode owner _ _ _ path _; do
  case $mode,$path in
    d*) expected=drwxr-xr-x ;;
    l*) expected=lrwxrwxrwx ;;
    *,./usr/bin/*) expected=-rwxr-xr-x ;;
    *) expected=-rw-r--r-- ;;
  esac
  [ "$mode $owner" = "$expected root/root" ] || { echo "FAILED: $mode $owner $path"; failed=1; }
done < <(dpkg-deb -c "$deb")
while read -r mode owner _ _ _ path; do
  case $path in
    ./postinst | ./postrm) expected=-rwxr-xr-x ;;
    ./) expected=drwxr-xr-x ;;
    *) expected=-rw-r--r-- ;;
  esac
  [ "$mode $owner" = "$expected root/root" ] || { echo "FAILED: $mode $owner control's $path"; failed=1; }
done < <(dpkg-deb --ctrl-tarfile "$deb" | tar -tv)
exit $failed
