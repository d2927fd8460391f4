# ZR_SANITIZE builds everything with the sanitizers it names ("address,undefined", "thread", "memory"): the
# library, the tests and GoogleTest alike, so that no uninstrumented code stands between them.
# ZR_COVERAGE counts executed lines for gcovr.
set(ZR_SANITIZE "" CACHE STRING "Sanitizers to build with, separated by commas")
option(ZR_COVERAGE "Count executed lines" OFF)
option(ZR_FUZZ "Build the fuzz targets with libFuzzer (clang only)" OFF)

if(ZR_SANITIZE)
  add_compile_options(-fsanitize=${ZR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZR_SANITIZE})
endif()
if(ZR_COVERAGE)
  # Threads may lose counts, but not all of them.
  add_compile_options(--coverage -fprofile-update=single)
  add_link_options(--coverage)
endif()
if(ZR_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=fuzzer-no-link)
endif()
