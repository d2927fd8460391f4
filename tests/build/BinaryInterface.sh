#!/usr/bin/env bash
# The binary interface (functions, classes, layouts, virtual slots) equals the stored reference.
# UPDATE=1 stores it as it is.
set -euo pipefail
library=$1
reference=$SOURCE/tests/build/binary-interface.xml
private=$SOURCE/tests/build/binary-interface.private
if [ -n "${UPDATE-}" ]; then
  abidw --suppressions "$private" --exported-interfaces-only --drop-undefined-syms --no-corpus-path \
        --no-comp-dir-path --no-show-locs --out-file "$reference" "$library"
  sed -i "s|path='$SOURCE/|path='|" "$reference"
  exit
fi
readelf --sections --wide "$library" | grep -q '\.debug_info' || { echo "built without debug information"; exit 1; }
abidiff --suppressions "$private" --no-show-locs "$reference" "$library" ||
  { echo "The binary interface differs; if that is meant: --target update-references"; exit 1; }
