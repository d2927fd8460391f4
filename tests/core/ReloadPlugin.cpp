// Uses the library from a shared object that a program loads and unloads.

#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <ZrConvertersLib/RGBFilter.h>

#define PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

using namespace ZrConvertersLib;

/// Has no kernel behind it, so that it says whether the driver itself is alive.
class Probe : public PixelConverter {
 public:
  Probe() : PixelConverter(-1, -2, 1, 1, 1, 1, true) {}
  ZrUtilsLib::Result ConvertLine(const PixelConverterContext& context, std::uint32_t) const override {
    *context.mDestination = context.mFilter->GetRed()[*context.mSource];
    return 0;
  }
};

/// Converts while the library's users are still being initialised.
const unsigned char kConverted = [] {
  const Probe probe;
  const unsigned char source = 200;
  unsigned char destination = 0;
  probe.Convert(&source, 1, 1, &destination, 1, 1, 1, 1, 0, 0, nullptr, nullptr, 0, false, nullptr);
  return destination;
}();

}  // namespace

/// Number of registered types; 0 when something is not as it should be after loading.
PLUGIN_EXPORT int CountTypes() {
  if (kConverted != 200 || !sRGBFilter.IsIdentity()) return 0;
  if (!PixelTypeFactory::HasConverter(-1, -2)) return 0;
  int count = 0;
  for (long id = 0; id < 0x1000; ++id) count += PixelTypeFactory::HasPixelType(id) ? 1 : 0;
  return count;
}
