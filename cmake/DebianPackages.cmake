# Debian packages, one of each component: the library, its development files and the tool.
# DEBFULLNAME and DEBEMAIL in the environment name who packs, as with Debian's own tools.
set(maintainer "ZrConvertersLib authors")
set(address "zrconverterslib@authors.invalid")
if(NOT "$ENV{DEBFULLNAME}" STREQUAL "")
  set(maintainer "$ENV{DEBFULLNAME}")
endif()
if(NOT "$ENV{DEBEMAIL}" STREQUAL "")
  set(address "$ENV{DEBEMAIL}")
endif()

set(library_package libzrconverterslib${PROJECT_VERSION})
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zrconverterslib)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${maintainer} <${address}>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL library development)
if(TARGET zrconvert)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
# The trigger runs ldconfig. CPack would write scripts that do it again, unless it is given these, which do not exist.
file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers
                                               ${PROJECT_BINARY_DIR}/debian/none/postinst
                                               ${PROJECT_BINARY_DIR}/debian/none/postrm)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzrconverterslib-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME zrconvert)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")
# A synopsis, then the description; no common summary goes before them.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(description "Turns mono, packed, Bayer, RGB and YCbCr frames, as industrial cameras send
them, into sixteen display and processing formats.
")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "converter of camera pixel formats (shared library)
${description}
This package holds the shared library.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "converter of camera pixel formats (development files)
${description}
This package holds the headers, the CMake package and the pkg-config file.")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "converter of raw camera frames into pictures
${description}
This package holds the command-line tool, which reads raw frames and writes
PNG, BMP, PNM and raw files.")
# What Debian asks of every package beside the files that "cmake --install" writes.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/DebianDocuments.cmake)
set(CPACK_ZR_SOURCE_DIR ${PROJECT_SOURCE_DIR})
set(CPACK_ZR_PACKAGES_library ${library_package})
set(CPACK_ZR_PACKAGES_development libzrconverterslib-dev)
set(CPACK_ZR_PACKAGES_tool zrconvert)
include(${PROJECT_SOURCE_DIR}/bindings/Packaging.cmake)
include(CPack)
