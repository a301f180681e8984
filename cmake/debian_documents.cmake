# Run by cpack when the packages' files are laid out, in a folder for each component: adds what Debian wants to find
# below share/doc, compresses what it wants compressed, and gives all files the time of SOURCE_DATE_EPOCH.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  string(TIMESTAMP now "%s")
  set(ENV{SOURCE_DATE_EPOCH} ${now})
endif()

function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} name)
  set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component})
  set(documents ${root}/usr/share/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME})
  file(MAKE_DIRECTORY ${documents})
  configure_file(${CPACK_TESSEL_SOURCE}/CHANGELOG.md ${documents}/changelog COPYONLY)
  file(WRITE ${documents}/changelog.Debian
    "tessel (${version}) unstable; urgency=medium\n\n"
    "  * What changed is told in changelog.gz.\n\n"
    " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
  file(GLOB compressed ${documents}/changelog* ${root}/usr/share/man/*/*)
  run(gzip -9n ${compressed})
  run(find ${root} -exec touch --no-dereference --date @$ENV{SOURCE_DATE_EPOCH} {} +)
endforeach()
