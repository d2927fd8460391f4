#pragma once

#include "core/FormatTable.h"

namespace ZrConvertersLib {

/// Registers the pixel types of a family in the order of the format table.
void RegisterFamily(Family family);

/// Registers its family's pixel types by being constructed: one static object per family, in the family's
/// unit.
template <Family kFamily>
struct TypeCreator {
  TypeCreator() { RegisterFamily(kFamily); }
};

using RGBCreator = TypeCreator<Family::Rgb>;
using MonoCreator = TypeCreator<Family::Mono>;
using YCbCrCreator = TypeCreator<Family::YCbCr>;
using BayerCreator = TypeCreator<Family::Bayer>;
using ScfCreator = TypeCreator<Family::Scf1>;
using BiColorCreator = TypeCreator<Family::BiColor>;

}  // namespace ZrConvertersLib
