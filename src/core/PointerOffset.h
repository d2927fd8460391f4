#pragma once

#include <cstddef>
#include <cstdint>

namespace ZrConvertersLib {

/// `pointer` moved by `bytes`. Line pointers leave their buffer between the calls that use them (past the
/// last line, before the first one when flipped) and may be null, which pointer arithmetic proper does not
/// allow.
template <class Byte>
Byte* OffsetBy(Byte* pointer, std::ptrdiff_t bytes) {
  return reinterpret_cast<Byte*>(reinterpret_cast<std::uintptr_t>(pointer) +
                                 static_cast<std::uintptr_t>(bytes));
}

}  // namespace ZrConvertersLib
