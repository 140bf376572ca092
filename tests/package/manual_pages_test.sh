#!/usr/bin/env bash
# manual_pages_test.sh FOLDER CONSOLE CONSOLE_MD: the manual pages in FOLDER are free of warnings, and that of the
# console tells the options that the program knows and the exit statuses of its document.
set -euo pipefail
folder=$1 console=$2 document=$3
for tool in mandoc groff; do
  command -v "$tool" >/dev/null || { echo "skipped: $tool is not installed"; exit 77; }
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

for program in demonstration simulated console; do
  page=$folder/varzelin-als-$program.1.gz
  gzip -dc "$page" > "$work/$program.1"
  mandoc -T lint -W warning "$work/$program.1" || { echo "FAILED: mandoc on $page"; failed=1; }
  groff -mandoc -ww -z -Tutf8 "$work/$program.1" 2>&1 | tee "$work/warnings"
  [ ! -s "$work/warnings" ] || { echo "FAILED: groff on $page"; failed=1; }
done

same() {
  if [ -z "$2" ] || [ "$2" != "$3" ]; then
    printf 'FAILED: the manual page tells other %s:\n%s\nnot\n%s\n' "$1" "$3" "$2"
    failed=1
  fi
}
options() { grep -oE -- '--[a-z]+' | sort -u; }
same options "$("$console" --help | options)" "$(mandoc -T ascii "$work/console.1" | sed 's/.\x08//g' | options)"
same "exit statuses" "$(sed -n 's/^| \([0-9]\) |.*/\1/p' "$document")" \
  "$(sed -n '/^\.Sh EXIT STATUS/,/^\.El/s/^\.It \([0-9]\)$/\1/p' "$work/console.1")"
exit $failed
