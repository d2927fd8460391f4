# Installing: the SONAME chain, headers, a relocatable CMake package, a pkg-config file and, with the tool, its
# man page and shell completion; "cmake --build . --target uninstall" takes them away again. CPack makes one
# Debian package of each component.
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

add_custom_target(uninstall COMMAND ${CMAKE_COMMAND} -D BUILD=${PROJECT_BINARY_DIR}
                                    -P ${CMAKE_CURRENT_LIST_DIR}/Uninstall.cmake)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zrconverterslib)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "ZrConvertersLib developers <developers@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development)
if(TARGET zrconvert)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libzrconverterslib7.5)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzrconverterslib-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libzrconverterslib7.5 (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME zrconvert)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION graphics)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "Converts the pixel formats of industrial cameras
 Shared library: mono, packed, Bayer, RGB and YCbCr frames to sixteen display and processing formats.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Converts the pixel formats of industrial cameras (development files)
 Headers, the CMake package and the pkg-config file.")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "Turns raw camera frames into pictures
 Command-line tool of the library ZrConvertersLib.")
include(CPack)
cpack_add_component(library)
cpack_add_component(development DEPENDS library)
if(TARGET zrconvert)
  cpack_add_component(tool DEPENDS library)
endif()
