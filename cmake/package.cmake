# What cpack makes: of a build for Windows a zip, of one by the preset `debian` packages for Debian.
if(NOT WIN32 AND NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  return()
endif()

set(TESSEL_MAINTAINER "tessel maintainers <maintainers@tessel.invalid>" CACHE STRING "Who stands behind packages")

set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_VENDOR tessel)
set(CPACK_PACKAGE_CONTACT ${TESSEL_MAINTAINER})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL library development tool)

if(WIN32)
  math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME tessel-${PROJECT_VERSION}-windows${bits})
else()
  set(CPACK_GENERATOR DEB)
  include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
endif()

include(CPack)
