#pragma once

#include <ZrConvertersLib/PixelTypeFactory.h>

#include "converters/MonoPackedTo.h"

/// Packed mono converters as the first stage of chains: they take the samples of other families' packed types
/// to those families' unpacked ones.

namespace ZrConvertersLib {

/// The pair of types is given explicitly, because it is not that of the reader and the writer.
template <class Converter>
struct Unpacker : Converter {
  template <class... Multiplier>
  Unpacker(const FormatRow& source, long destination, Multiplier... widthMultiplier)
      : Converter(source, destination, false, widthMultiplier...) {
    PixelTypeFactory::RegisterPixelConverter(*this);
  }
};

template <class Out>
using Mono10pUnpacker = Unpacker<Mono10pTo<Out>>;
template <class Out>
using Mono12pUnpacker = Unpacker<Mono12pTo<Out>>;
template <class Out>
using Mono14pUnpacker = Unpacker<Mono14pTo<Out>>;
template <class Out>
using MonoPackedUnpacker = Unpacker<MonoPackedTo<Out>>;

}  // namespace ZrConvertersLib
