#!/usr/bin/env bash
# A stranger's view: install, move the tree, and build the examples against it with CMake and with pkg-config;
# then uninstall, and nothing is left.
set -euo pipefail
build=$1 cmake=$2
work=$(mktemp -d)
manifest=$build/install_manifest.txt
[ ! -e "$manifest" ] || cp "$manifest" "$work/kept"
restore() {
  rm -f "$manifest"
  [ ! -e "$work/kept" ] || cp "$work/kept" "$manifest"
  rm -rf "$work"
}
trap restore EXIT

"$cmake" --install "$build" --prefix "$work/first" >"$work/log"
mv "$work/first" "$work/tree"
libdir=$(dirname "$(find "$work/tree" -name "libZrConvertersLib.so.$VERSION")")
[ "$(readlink "$libdir/libZrConvertersLib.so")" = "libZrConvertersLib.so.$VERSION" ]

echo "-- with CMake"
"$cmake" -G Ninja -S "$SOURCE/examples" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/tree" \
         -DCMAKE_CXX_COMPILER="$CXX" >>"$work/log"
"$cmake" --build "$work/consumer" >>"$work/log" || { cat "$work/log"; exit 1; }
sed -n '/^```cpp$/,/^```$/p' "$SOURCE/README.md" | sed '/^```/d' >"$work/readme.cpp"
examples=("$SOURCE"/examples/*.cpp)
[ -e "${examples[0]}" ] || { echo "no examples"; exit 1; }
for example in "${examples[@]}"; do
  name=$(basename "$example" .cpp)
  (cd "$work" && "$work/consumer/$name" >"$name.cmake.out") || { echo "$name failed"; cat "$work/$name.cmake.out"; exit 1; }
done

echo "-- with pkg-config"
export PKG_CONFIG_PATH=$libdir/pkgconfig
[ "$(pkg-config --modversion ZrConvertersLib)" = "$VERSION" ]
flags=$(pkg-config --cflags --libs ZrConvertersLib)
case $flags in *"$work/tree/"*) ;; *) echo "not relocated: $flags"; exit 1 ;; esac
for example in "${examples[@]}" "$work/readme.cpp"; do
  name=$(basename "$example" .cpp)
  # shellcheck disable=SC2086 # the flags are words
  "$CXX" -std=c++20 -O1 "$example" -o "$work/$name" $flags -pthread
  (cd "$work" && LD_LIBRARY_PATH=$libdir "./$name" >"$name.pc.out") || { echo "$name failed"; exit 1; }
done

if [ -x "$work/tree/bin/zrconvert" ]; then
  "$work/tree/bin/zrconvert" formats >"$work/formats"
  grep -q Mono8 "$work/formats"
fi

echo "-- uninstall"
mkdir "$work/build"
DESTDIR=$work/staged "$cmake" --install "$build" --prefix /opt/zr >"$work/log"
mv "$manifest" "$work/build"
DESTDIR=$work/staged "$cmake" -D BUILD="$work/build" -P "$SOURCE/cmake/Uninstall.cmake" >"$work/log" 2>&1
left=$(find "$work/staged" ! -type d)
[ -z "$left" ] || { echo "left behind: $left"; exit 1; }
