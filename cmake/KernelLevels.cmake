# zr_add_kernel_levels(<target> SOURCES <file>...): compiles every kernel file once per CPU level of the
# architecture that is built for, and adds the objects to <target>.
#
# ZR_LEVEL names the level inside the kernel files; it becomes part of the name of the one table each exports.
function(zr_add_kernel_levels target)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$")
    # What these flags allow is what src/simd/CpuFeatures.h looks for before it chooses a level.
    set(levels Baseline ${ZR_KERNEL_LEVELS})
    set(flags_Baseline -march=x86-64)
    set(flags_V2 -march=x86-64-v2)
    set(flags_V3 -march=x86-64-v3)
    set(flags_V4 -march=x86-64-v4 -mavx512vbmi -mavx512vbmi2 -mavx512vnni -mprefer-vector-width=512)
  elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
    set(levels Neon)
  elseif(EMSCRIPTEN)
    set(levels Wasm)
    set(flags_Wasm -msimd128)
  else()
    message(FATAL_ERROR "Vector kernels exist for x86-64, 64-bit Arm and WebAssembly, not for "
                        "'${CMAKE_SYSTEM_PROCESSOR}'.")
  endif()
  # For coverage: lines that are optimised away would not count as executed.
  set(optimisation $<IF:$<BOOL:${ZR_COVERAGE}>,-O0,-O2>)
  foreach(level IN LISTS levels)
    set(objects ${target}Kernels${level})
    add_library(${objects} OBJECT ${ARG_SOURCES})
    zr_warnings(${objects})
    target_include_directories(${objects} PRIVATE ${PROJECT_SOURCE_DIR}/src)
    target_compile_definitions(${objects} PRIVATE ZR_LEVEL=${level})
    # Link-time optimisation would merge functions of different levels.
    target_compile_options(${objects} PRIVATE ${flags_${level}} ${optimisation} -fno-lto -fno-exceptions -fno-rtti
                                              -fno-math-errno -fvisibility=hidden -fno-stack-protector
                                              -U_FORTIFY_SOURCE)
    # Sanitizers would make these files take many minutes; buffers that end at unmapped pages, with every kernel at
    # every level, find what they would.
    target_compile_options(${objects} PRIVATE -fno-sanitize=all)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      # Some of GCC's own intrinsics start from a vector they leave uninitialised on purpose.
      target_compile_options(${objects} PRIVATE -Wno-psabi -Wno-uninitialized -Wno-maybe-uninitialized)
    endif()
    set_target_properties(${objects} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:${objects}>)
    string(TOUPPER ${level} upper)
    target_compile_definitions(${target} PRIVATE ZR_LEVEL_${upper})
    list(JOIN flags_${level} "," flags)
    set_property(TARGET ${target} APPEND PROPERTY ZR_LEVEL_TARGETS ${objects})
    set_property(TARGET ${target} APPEND PROPERTY ZR_LEVEL_FLAGS ${flags})
  endforeach()
endfunction()
