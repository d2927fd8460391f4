#pragma once

#include <cstddef>
#include <cstdint>

namespace ZrConvertersLib {

/// `pointer` moved by `bytes`. Between the calls that use them, line pointers may point outside their buffer
/// (past the last line, or before the first one when flipped) or be null, where ordinary pointer arithmetic
/// is undefined.
template <class Byte>
Byte* OffsetBy(Byte* pointer, std::ptrdiff_t bytes) {
  return reinterpret_cast<Byte*>(reinterpret_cast<std::uintptr_t>(pointer) +
                                 static_cast<std::uintptr_t>(bytes));
}

}  // namespace ZrConvertersLib
