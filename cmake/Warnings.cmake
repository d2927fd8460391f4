# zr_warnings(<target>): the warnings every target of this project is built with, as errors.
function(zr_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
                                           -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Werror
                                           # GCC 12 sees overlaps in std::string's operator+ that are none
                                           $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
endfunction()
