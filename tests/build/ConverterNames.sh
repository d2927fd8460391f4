#!/usr/bin/env bash
# docs/converters.md names exactly the converter objects that the library holds.
set -euo pipefail
library=$1
held=$("$NM" --demangle "$library" | sed -nE 's/.* [bBdDrR] .*::(s[A-Z][A-Za-z0-9_]*To[A-Z][A-Za-z0-9_]*)$/\1/p' | sort)
named=$(grep -o '`s[^`]*To[^`]*`' "$SOURCE/docs/converters.md" | tr -d '`' | sort)
diff <(echo "$named") <(echo "$held") || { echo "left: named, right: held by the library"; exit 1; }
echo "$(wc -l <<<"$held") objects"
