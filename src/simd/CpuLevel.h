#pragma once

#include <cstddef>

#include "simd/DevelopKernels.h"
#include "simd/LineKernel.h"
#include "simd/Scf1Kernel.h"

namespace ZrConvertersLib::simd {

/// The kernels of one CPU level.
struct Level {
  const char* name;
  bool (*runs)();           ///< whether this machine can run it
  std::size_t blockPixels;  ///< fewest pixels a kernel call may have
  bool computesTables;      ///< whether filtered writers compute straight tables, see Lookup.h
  const FamilyKernels* families[5];
  const StreamFunction* stream;
  const MirrorFunction* mirror;
  const Scf1Kernels* scf1;
  const KernelRow* halves;  ///< of lines of three planes in halves, see DevelopKernels.h
  const DemosaicKernels* demosaic;
  const GradeKernels* grade;
  const YCbCrDepthKernels* yCbCrDepth;

  KernelFunction Find(SourceReader reader, PixelWriter writer) const;
};

/// The level in use; the highest this machine runs unless one was forced.
const Level& CurrentLevel();

}  // namespace ZrConvertersLib::simd
