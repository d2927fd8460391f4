#pragma once

#include "core/Destinations.h"
#include "core/OutputWriters.h"

/// @file
/// The static objects s<Source>To<Destination> of a family's sources, one for each destination of the list.

/// One object of `converter<writer>` for each destination.
#define ZR_CONVERTERS(source, converter) ZR_DESTINATIONS(ZR_CONVERTER, source, converter)
#define ZR_CONVERTER(name, type, chained, bytes, planes, depth, channels, path, source, converter) \
  converter<Output##name> s##source##To##name{FormatOf(PixelTypeIds::source)};

/// One chain for each destination, by way of bytes8 for destinations of bytes and of words16 for deeper ones.
/// The unpackers s<Source>To<bytes8> and s<Source>To<words16> must be defined before.
#define ZR_CHAINS(source, bytes8, words16) ZR_DESTINATIONS(ZR_CHAIN, source, bytes8, words16)
#define ZR_CHAIN(name, type, chained, bytes, planes, depth, channels, path, source, bytes8, words16) \
  ZR_CHAIN_BY(source, name, ZR_PATH_##path(bytes8, words16), name)

/// The same for colour streams, whose objects call RGBa8 and BGRa8 RGB32 and BGR32.
#define ZR_COLOUR_CHAINS(source, bytes8, words16) ZR_DESTINATIONS(ZR_COLOUR_CHAIN, source, bytes8, words16)
#define ZR_COLOUR_CHAIN(name, type, chained, bytes, planes, depth, channels, path, source, bytes8, words16) \
  ZR_CHAIN_BY(source, chained, ZR_PATH_##path(bytes8, words16), name)

#define ZR_PATH_8(bytes8, words16) bytes8
#define ZR_PATH_16(bytes8, words16) words16
#define ZR_CHAIN_BY(source, object, unpacked, name) ZR_CHAIN_OBJECT(source, object, unpacked, name)
#define ZR_CHAIN_OBJECT(source, object, unpacked, name) \
  FusedChain s##source##To##object{&s##source##To##unpacked, &s##unpacked##To##name};
