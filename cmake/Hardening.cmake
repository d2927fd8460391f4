# Hardening as Debian builds its packages: guarded stack frames and checked calls of the C library where code is
# optimised, symbols bound at load, position-independent programs. zr_add_kernel_levels takes the compiler's part
# back for kernels, whose functions call nothing and keep nothing but blocks of fixed size on the stack. Sanitizers
# bring checks of their own; WebAssembly programs cannot leave their memory or change their code.
if(EMSCRIPTEN)
  return()
endif()
if(NOT ZR_SANITIZE AND NOT ZR_FUZZ)
  set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
  add_compile_options(-fstack-protector-strong)
  add_compile_options("$<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  add_link_options(LINKER:-z,relro LINKER:-z,now)
endif()
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
