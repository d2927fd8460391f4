#!/usr/bin/env bash
# The choice of the CPU level looks at every feature that the compiler may use there: those the flags of a level
# switch on stand in simd/CpuFeatures.h, and an emulated CPU that lacks one of them runs at the level below.
# CpuFeatures.sh PROGRAM EMULATOR FLAGS_OF_BASELINE FLAGS_OF_V2 ... (the flags of a level separated by commas)
set -euo pipefail
program=$1 emulator=$2
shift 2
status=0
fault() { echo "$1"; status=1; }

# Macros like __AVX2__, of the features that the flags switch on.
features() {
  # shellcheck disable=SC2086 # the flags are words
  "$CXX" ${1//,/ } -dM -E -x c++ /dev/null | sed -n 's/^#define __\([A-Z0-9_]*\)__ 1$/\1/p' | sort
}
before=$(features "$1")
for flags in "$@"; do
  new=$(comm -13 <(echo "$before") <(features "$flags") | sed -e 's/^LAHF_SAHF$/LAHF_LM/' -e 's/^CRC32$/SSE4_2/')
  for feature in $new; do
    case $feature in FP_FAST_*|EVEX*) continue ;; esac
    grep -qw "bit_$feature" "$SOURCE/src/simd/CpuFeatures.h" || fault "$flags: $feature is not looked at"
  done
done

[ -n "$emulator" ] || { echo "no emulator: only the flags were compared"; exit $status; }
level() { "$emulator" -cpu "$1" "$program"; }
[ "$(level max)" = x86-64-v3 ] || fault "the whole emulated CPU is $(level max)"
for feature in fma movbe xsave avx f16c bmi1 avx2 bmi2 abm; do
  [ "$(level "max,-$feature")" = x86-64-v2 ] || fault "without $feature: $(level "max,-$feature")"
done
for feature in pni ssse3 cx16 sse4.1 sse4.2 popcnt lahf-lm; do
  [ "$(level "max,-$feature")" = x86-64 ] || fault "without $feature: $(level "max,-$feature")"
done
exit $status
