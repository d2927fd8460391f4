// The list of formats for programs.
#pragma once

#include <cstdint>
#include <string>

namespace zrconvert {

// An array of objects on standard output, one for each format.
void PrintFormatsAsJson();

// "0x010C0059"
std::string CodeText(std::uint32_t code);

}  // namespace zrconvert
