#!/usr/bin/env bash
# The Debian packages hold what they should, name their dependencies, and the tool runs from what they unpack.
set -euo pipefail
build=$1 cpack=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$cpack" --config "$build/CPackConfig.cmake" -B "$work/packages" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }

package() { ls "$work"/packages/"$1"_*.deb; }
holds() { dpkg-deb --contents "$(package "$1")" >"$work/contents"; grep -qE "$2" "$work/contents" || { echo "$1 lacks $2"; exit 1; }; }
depends() { dpkg-deb --field "$(package "$1")" Depends | grep -q "$2" || { echo "$1 does not depend on $2"; exit 1; }; }

holds libzrconverterslib7.5 'libZrConvertersLib\.so\.7\.5$'
depends libzrconverterslib7.5 libstdc++6
if dpkg-deb --contents "$(package libzrconverterslib7.5)" | grep -E '\.h$|\.cmake$'; then exit 1; fi
holds libzrconverterslib-dev 'include/ZrConvertersLib/PixelConverter\.h$'
holds libzrconverterslib-dev 'ZrConvertersLibConfig\.cmake$'
holds libzrconverterslib-dev 'ZrConvertersLib\.pc$'
holds libzrconverterslib-dev 'libZrConvertersLib\.so -> libZrConvertersLib\.so\.7\.5$'
depends libzrconverterslib-dev 'libzrconverterslib7.5 (= 7.5)'
for package in "$work"/packages/*.deb; do dpkg-deb --extract "$package" "$work/root"; done
if find "$work/root" -type f -perm /o+w | grep .; then echo "writable by everybody"; exit 1; fi

if [ -x "$build/tools/zrconvert/zrconvert" ]; then
  holds zrconvert 'usr/bin/zrconvert$'
  holds zrconvert 'man1/zrconvert\.1(\.gz)?$'
  holds zrconvert 'bash-completion/completions/zrconvert$'
  depends zrconvert libzrconverterslib7.5
  depends zrconvert libpng16-16
  "$work/root/usr/bin/zrconvert" pairs Mono8 >"$work/pairs"
  grep -q RGB8 "$work/pairs"
fi
