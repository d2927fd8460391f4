# The Debian packages of what was built of the bindings; cmake/DebianPackages.cmake includes this.
if(TARGET zrpython)
  list(APPEND CPACK_COMPONENTS_ALL python)
  set(CPACK_ZR_PACKAGES_python python3-zrconverters)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-zrconverters)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  # The module is built for one version of Python, which its file name carries.
  get_property(python_minor GLOBAL PROPERTY ZR_PYTHON_MINOR)
  math(EXPR python_next "${python_minor} + 1")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
      "${library_package} (= ${PROJECT_VERSION}), python3 (>= 3.${python_minor}), python3 (<< 3.${python_next}), python3-numpy")
  set(CPACK_COMPONENT_PYTHON_DESCRIPTION "converter of camera pixel formats (Python package)
${description}
This package holds the Python package zrconverters, which takes any buffer and
gives numpy arrays.")
endif()
if(TARGET zrgstreamer)
  list(APPEND CPACK_COMPONENTS_ALL gstreamer)
  set(CPACK_ZR_PACKAGES_gstreamer gstreamer1.0-zrconverters)
  set(CPACK_DEBIAN_GSTREAMER_PACKAGE_NAME gstreamer1.0-zrconverters)
  set(CPACK_DEBIAN_GSTREAMER_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_GSTREAMER_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")
  set(CPACK_COMPONENT_GSTREAMER_DESCRIPTION "converter of camera pixel formats (GStreamer plugin)
${description}
This package holds the element zrconvert, which turns camera frames, packed and
mosaic ones too, into raw video.")
endif()
