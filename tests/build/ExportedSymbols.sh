#!/usr/bin/env bash
# The library exports exactly the symbols of exported-symbols.txt (in the form the source has them), each with
# the library's version, and nothing that keeps it from being unloaded.
# UPDATE=1 stores the symbols as they are.
set -euo pipefail
library=$1
list=$SOURCE/tests/build/exported-symbols.txt
exported() { "$NM" --dynamic --defined-only "$library" | grep -v ' A '; }

# Constructors and destructors have several symbols of one name.
names=$(exported | awk '{print $3}' | sed 's/@.*//' | c++filt | sort -u)
if [ -n "${UPDATE-}" ]; then
  echo "$names" >"$list"
  exit
fi
diff -u "$list" - <<<"$names" || { echo "The exported symbols differ; if that is meant: --target update-references"; exit 1; }
if exported | grep -v "@@ZrConvertersLib_$VERSION\$"; then echo "have no version"; exit 1; fi
if exported | grep ' u '; then echo "are unique in the process: the library could never be unloaded"; exit 1; fi
