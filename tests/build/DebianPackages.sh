#!/usr/bin/env bash
# The Debian packages hold what they should, pass lintian, name each dependency once, and the tool runs from what they
# unpack.
set -euo pipefail
build=$1 cpack=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$cpack" --config "$build/CPackConfig.cmake" -B "$work/packages" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
library=libzrconverterslib$VERSION

package() { ls "$work"/packages/"$1"_*.deb; }
holds() { dpkg-deb --contents "$(package "$1")" >"$work/contents"; grep -qE "$2" "$work/contents" || { echo "$1 lacks $2"; exit 1; }; }
depends() { dpkg-deb --field "$(package "$1")" Depends | grep -qF "$2" || { echo "$1 does not depend on $2"; exit 1; }; }

holds "$library" "libZrConvertersLib\.so\.$VERSION\$"
depends "$library" libstdc++6
if dpkg-deb --contents "$(package "$library")" | grep -E '\.h$|\.cmake$'; then exit 1; fi
holds libzrconverterslib-dev 'include/ZrConvertersLib/PixelConverter\.h$'
holds libzrconverterslib-dev 'ZrConvertersLibConfig\.cmake$'
holds libzrconverterslib-dev 'ZrConvertersLib\.pc$'
holds libzrconverterslib-dev "libZrConvertersLib\.so -> libZrConvertersLib\.so\.$VERSION\$"
depends libzrconverterslib-dev "$library (= $VERSION)"
# A compiled Python module needs Python from one version on and below the next.
for package in "$work"/packages/*.deb; do
  dpkg-deb --extract "$package" "$work/root"
  twice=$(dpkg-deb --field "$package" Depends | tr ',' '\n' | awk '$1 != "python3" { print $1 }' | sort | uniq -d)
  [ -z "$twice" ] || { echo "$package depends twice on $twice"; exit 1; }
done
if find "$work/root" -type f -perm /o+w | grep .; then echo "writable by everybody"; exit 1; fi

if command -v lintian >/dev/null; then
  # As root it says so, which is no fault of the packages.
  found=$(lintian --fail-on none "$work"/packages/*.deb 2>&1 | grep -v 'root privileges') || true
  [ -z "$found" ] || { echo "$found"; exit 1; }
else
  echo "lintian is not installed: skipped"
fi

if [ -e "$build/bindings/python" ]; then
  holds python3-zrconverters 'dist-packages/zrconverters/_zrconverters\..*\.so$'
  holds python3-zrconverters 'dist-packages/zrconverters/py\.typed$'
  depends python3-zrconverters "$library (= $VERSION)"
  depends python3-zrconverters python3-numpy
fi
if [ -e "$build/bindings/gstreamer" ]; then
  holds gstreamer1.0-zrconverters 'gstreamer-1\.0/libgstzrconverters\.so$'
  depends gstreamer1.0-zrconverters "$library (= $VERSION)"
  depends gstreamer1.0-zrconverters libgstreamer1.0-0
fi

if [ -x "$build/tools/zrconvert/zrconvert" ]; then
  holds zrconvert 'usr/bin/zrconvert$'
  holds zrconvert 'man1/zrconvert\.1\.gz$'
  holds zrconvert 'bash-completion/completions/zrconvert$'
  depends zrconvert "$library"
  depends zrconvert libpng16-16
  if "$READELF" --dynamic "$work/root/usr/bin/zrconvert" | grep -E 'RPATH|RUNPATH'; then exit 1; fi
  libdir=$(dirname "$(find "$work/root" -name "libZrConvertersLib.so.$VERSION")")
  LD_LIBRARY_PATH=$libdir "$work/root/usr/bin/zrconvert" pairs Mono8 >"$work/pairs"
  grep -q RGB8 "$work/pairs"
fi
