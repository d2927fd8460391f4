# The binary interface (functions, classes, layouts, virtual slots) equals the stored reference.
# UPDATE=1 stores it as it is.
set -euo pipefail
library=$1
reference=$SOURCE/tests/build/binary-interface.xml
if [ -n "${UPDATE-}" ]; then
  abidw --headers-dir "$SOURCE/include" --no-corpus-path --no-comp-dir-path --no-show-locs --type-id-style hash \
        --out-file "$reference" "$library"
  exit
fi
"$READELF" --sections --wide "$library" | grep -q '\.debug_info' || { echo "built without debug information"; exit 1; }
abidiff --headers-dir2 "$SOURCE/include" --no-show-locs "$reference" "$library" ||
  { echo "The binary interface differs; if that is meant: --target update-references"; exit 1; }
