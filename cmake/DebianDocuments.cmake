# Run by CPack over the files it is about to pack: adds each package's copyright file and change logs, compresses the
# manual page, and takes the search paths out of programs and modules, which find the library without them.
set(work ${CPACK_TEMPORARY_DIRECTORY})
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)

file(READ ${CPACK_ZR_SOURCE_DIR}/LICENSE license)
string(REGEX MATCH "Copyright[^\n]*" holder "${license}")
string(REGEX REPLACE "^Copyright \\(c\\) " "" holder "${holder}")
string(REGEX REPLACE "^.*\n(Permission is hereby granted)" "\\1" license "${license}")
string(REGEX REPLACE "\n\n" "\n.\n" license "${license}")
string(STRIP "${license}" license)
string(REPLACE "\n" "\n " license "${license}")
set(copyright "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: ZrConvertersLib

Files: *
Copyright: ${holder}
License: Expat
 ${license}
")

set(changelog "zrconverterslib (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}; NEWS.gz says what is new.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  set(root ${work}/${component}/usr)
  set(documents ${root}/share/doc/${CPACK_ZR_PACKAGES_${component}})
  file(WRITE ${documents}/copyright "${copyright}")
  file(WRITE ${documents}/changelog "${changelog}")
  file(COPY_FILE ${CPACK_ZR_SOURCE_DIR}/CHANGELOG.md ${documents}/NEWS)
  file(GLOB compressed ${documents}/changelog ${documents}/NEWS ${root}/share/man/man*/*.1)
  execute_process(COMMAND gzip --best --no-name --force ${compressed} COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB programs ${root}/bin/* ${root}/lib/*/gstreamer-1.0/*.so ${root}/lib/python3/dist-packages/*/*.so)
  foreach(program IN LISTS programs)
    file(RPATH_REMOVE FILE ${program})
  endforeach()
endforeach()
