#pragma once

#include "core/OutputWriters.h"

/// Makes `make(destination)` for the sixteen destinations, in the order families register them. Each family
/// defines what `make` is: the static object s<Source>To<Destination>.
#define ZR_FOR_EACH_DESTINATION(make, source)                                                         \
  make(source, RGB565p) make(source, RGB8) make(source, BGR8) make(source, RGBa8) make(source, BGRa8) \
      make(source, Mono8) make(source, Mono10) make(source, Mono12) make(source, Mono14)              \
          make(source, Mono16) make(source, RGB16) make(source, BGR16) make(source, Planar8)          \
              make(source, Planar10) make(source, Planar12) make(source, Planar16)
