# zr_warnings(<target>): the warnings every target of this project is built with; ZR_WERROR, which the presets of the
# tests set, makes them errors. Newer compilers warn of more.
function(zr_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
                                           -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
                                           $<$<BOOL:${ZR_WERROR}>:-Werror>
                                           # GCC 12 sees overlaps in std::string's operator+ that are none
                                           $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
  if(EMSCRIPTEN)
    # Sizes and distances are 64-bit elsewhere and take any 32-bit count; frames in a 32-bit memory are so small that
    # 32 bits do too.
    target_compile_options(${target} PRIVATE -Wno-conversion -Wno-sign-compare -Wno-c++11-narrowing)
  endif()
endfunction()
