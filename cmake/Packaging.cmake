# Installing: the SONAME chain, headers, a relocatable CMake package, a pkg-config file and, with the tool, its
# man page and shell completion; "cmake --build . --target uninstall" takes them away again.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZrConvertersLib)
install(TARGETS ZrConvertersLib ZrUtilsLib EXPORT ZrConvertersLibTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT ZrConvertersLibTargets NAMESPACE ZrConvertersLib:: DESTINATION ${package_dir} COMPONENT development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ZrConvertersLibConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/ZrConvertersLibConfig.cmake INSTALL_DESTINATION ${package_dir}
                              NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
# The SONAME carries the minor version too: a program built for 7.5 needs exactly 7.5.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZrConvertersLibConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZrConvertersLibConfig.cmake
              ${PROJECT_BINARY_DIR}/ZrConvertersLibConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# The pkg-config file finds its prefix from its own place, so that an installed tree may be moved.
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" prefix_from_pc "${prefix_from_pc}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/ZrConvertersLib.pc.in ${PROJECT_BINARY_DIR}/ZrConvertersLib.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ZrConvertersLib.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(TARGET zrconvert)
  # An installed tree may be moved as a whole; Debian packages lie where the dynamic linker looks, and drop this path.
  file(RELATIVE_PATH lib_from_bin /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(zrconvert PROPERTIES INSTALL_RPATH "$ORIGIN/${lib_from_bin}")
  install(TARGETS zrconvert RUNTIME COMPONENT tool)
  if(EXISTS ${PROJECT_SOURCE_DIR}/tools/zrconvert/zrconvert.1)
    install(FILES ${PROJECT_SOURCE_DIR}/tools/zrconvert/zrconvert.1
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  endif()
  if(EXISTS ${PROJECT_SOURCE_DIR}/tools/zrconvert/zrconvert.bash)
    install(FILES ${PROJECT_SOURCE_DIR}/tools/zrconvert/zrconvert.bash
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME zrconvert COMPONENT tool)
  endif()
endif()

# Installed where the dynamic linker looks, the library is found at once.
install(SCRIPT ${CMAKE_CURRENT_LIST_DIR}/RefreshLinkerCache.cmake COMPONENT library)

add_custom_target(uninstall COMMAND ${CMAKE_COMMAND} -D BUILD=${PROJECT_BINARY_DIR}
                                    -P ${CMAKE_CURRENT_LIST_DIR}/Uninstall.cmake)

include(DebianPackages)
