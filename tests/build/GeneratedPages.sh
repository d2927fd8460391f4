#!/usr/bin/env bash
# The generated pages are those that the program writes now.
set -euo pipefail
program=$1
fresh=$(mktemp)
trap 'rm -f "$fresh"' EXIT
for page in formats converters; do
  "$program" $page "$fresh"
  diff -u "$SOURCE/docs/$page.md" "$fresh" || { echo "docs/$page.md is old: --target update-pages"; exit 1; }
done
