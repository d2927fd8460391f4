#!/usr/bin/env bash
# Code compiled for a newer CPU must not be reachable on an older one. So a kernel object defines one symbol
# that others see, its constant table; no weak or COMDAT function (the linker might take this copy for all);
# nothing that runs when the library is loaded; and calls nothing but the C library's memory functions.
set -euo pipefail
[ $# -gt 0 ] || { echo "no kernel objects"; exit 1; }
status=0
fault() { echo "$object: $1"; status=1; }
for object in "$@"; do
  symbols=$("$NM" --format=posix "$object")
  global=$(awk '$2 ~ /^[A-TV-Zu]$/ { print $2, $1 }' <<<"$symbols")
  [ "$(grep -c . <<<"$global")" -eq 1 ] || fault "defines more or less than one symbol: $global"
  grep -q '^[RD] ' <<<"$global" || fault "exports something else than a table: $global"
  undefined=$(awk '$2 == "U" || $2 == "w" { print $1 }' <<<"$symbols" |
    grep -Ev '^(memcpy|memmove|memset|memcmp|_GLOBAL_OFFSET_TABLE_|__stack_chk_fail)$' || true)
  [ -z "$undefined" ] || fault "calls: $undefined"
  sections=$("$READELF" --sections --wide "$object")
  if grep -E '\.(init_array|ctors|fini_array|tbss|tdata)' <<<"$sections"; then fault "runs code at load or has thread data"; fi
  if grep -E ' GROUP ' <<<"$sections"; then fault "has COMDAT groups"; fi
done
echo "$# objects looked at"
exit $status
