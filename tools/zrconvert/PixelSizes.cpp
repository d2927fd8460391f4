#include "PixelSizes.h"

#include <ZrConvertersLib/PixelType.h>
#include <ZrConvertersLib/PixelTypeFactory.h>

namespace zrconvert {

PixelSizes RegisteredSizes(long id) {
  using ZrConvertersLib::PixelTypeFactory;
  const ZrConvertersLib::PixelType* type = PixelTypeFactory::GetPixelType(id);
  if (!type) return {"-", "-"};
  return {std::to_string(type->GetPixelBitSize()), std::to_string(type->GetPixelByteSize())};
}

}  // namespace zrconvert
