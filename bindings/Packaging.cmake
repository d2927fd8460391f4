# The Debian packages of what was built of the bindings.
if(TARGET zrpython)
  list(APPEND CPACK_COMPONENTS_ALL python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-zrconverters)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  # The module's file name carries the version of Python that it was built for.
  math(EXPR next "${Python_VERSION_MINOR} + 1")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "python3 (>= 3.${Python_VERSION_MINOR}), python3 (<< 3.${next}), python3-numpy")
  set(CPACK_COMPONENT_PYTHON_DESCRIPTION "Converts the pixel formats of industrial cameras (Python package)
 Any buffer in, numpy arrays out, without copies.")
  set(CPACK_COMPONENT_PYTHON_DEPENDS library)
endif()
