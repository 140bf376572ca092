#!/usr/bin/env bash
# metainfo_test.sh FILE: the metainfo is free of errors and warnings, but for the home page that AppStream wants
# since its version 1.0: the program has none.
set -euo pipefail
command -v appstreamcli >/dev/null || exit 77
said=$(appstreamcli validate --no-net "$1" || true)
echo "$said"
grep -q 'Validation' <<<"$said"
! grep '^[EW]:' <<<"$said" | grep -v ': url-homepage-missing$'
