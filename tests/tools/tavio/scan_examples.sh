#!/bin/sh
# The codes on the example tickets scan: scan_examples.sh TAVIO SOURCES. Exits with 77 without a scanner.
command -v zbarimg >/dev/null || exit 77
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
cd "$2" || exit 1
scans() { # program example data
  "$1" run "examples/$2.tavio" --to "$folder/$2.png" || exit 1
  seen=$(zbarimg --quiet "$folder/$2.png" 2>/dev/null)
  [ "$seen" = "$3" ] && return
  echo "$2: \"$seen\" instead of \"$3\""
  exit 1
}
scans "$1" concert "QR-Code:https://example.org/t/4711-0815"
scans "$1" cloakroom "CODE-128:CR-0217"
scans "$1" price "EAN-13:4006381333931"
