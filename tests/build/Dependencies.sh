#!/usr/bin/env bash
# The library carries its name, needs nothing beside the C and C++ standard libraries, is hardened (no
# text relocations, no executable stack, bound at load, stack protector), and stays small.
set -euo pipefail
library=$1
dynamic=$("$READELF" --dynamic --wide "$library")

soname=$(sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p' <<<"$dynamic")
[ "$soname" = "libZrConvertersLib.so.$VERSION" ] || { echo "SONAME is $soname"; exit 1; }

foreign=$(sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' <<<"$dynamic" |
  grep -Ev '^(libc|libm|libstdc\+\+|libgcc_s|ld-linux-[a-z0-9_-]+)\.so\.[0-9]+$' || true)
[ -z "$foreign" ] || { echo "needs $foreign"; exit 1; }

grep -q BIND_NOW <<<"$dynamic" || { echo "binds symbols late"; exit 1; }
"$READELF" --symbols --wide "$library" | grep __stack_chk_fail >/dev/null || { echo "has no stack protector"; exit 1; }
if grep -E 'TEXTREL|\((RPATH|RUNPATH)\)' <<<"$dynamic"; then exit 1; fi
if "$READELF" --segments --wide "$library" | grep -E 'GNU_STACK.*RWE'; then exit 1; fi

stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
"$STRIP" -o "$stripped" "$library"
size=$(stat -c %s "$stripped")
echo "stripped: $size bytes"
[ "$size" -lt $((8 * 1024 * 1024)) ] || { echo "more than 8 MiB"; exit 1; }
