# The packages for Debian, one a component.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SOURCE tessel)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each description has its own, as its first line

set(runtime_package libtessel${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
"library for the ASN.1 structures of a public-key infrastructure
tessel reads, builds, edits and writes X.509 certificates with their
names, algorithms and extensions. It accepts BER and writes DER, and
does no cryptography.
.
This package has the library that programs use while they run.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtessel-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${runtime_package} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"library for the ASN.1 structures of a public-key infrastructure (development)
tessel reads, builds, edits and writes X.509 certificates with their
names, algorithms and extensions. It accepts BER and writes DER, and
does no cryptography.
.
This package has what programs in C and C++ are built with: headers,
files for pkg-config and CMake, and a guide with examples.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME tessel)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_TOOL_DESCRIPTION
"command that shows certificates and other ASN.1 encodings
tessel shows X.509 certificates for people and programs, and the
elements of any BER or DER. It says exactly where a malformed file
breaks.")

# Programs built with the library depend on it by `shlibs`; the loader's cache is made anew by the trigger.
set(control_folder ${PROJECT_BINARY_DIR}/debian)
file(WRITE ${control_folder}/control "")  # dpkg-shlibdeps does not run without one
file(CONFIGURE OUTPUT ${control_folder}/shlibs @ONLY
  CONTENT "libtessel @PROJECT_VERSION_MAJOR@ @runtime_package@ (>= @PROJECT_VERSION@)\n")
file(CONFIGURE OUTPUT ${control_folder}/triggers @ONLY CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${control_folder}/shlibs ${control_folder}/triggers)

# Scripts that cpack runs: when it starts, and when a package's files are laid out.
set(CPACK_TESSEL_CONTROL_FOLDER ${control_folder})
set(CPACK_TESSEL_SOURCE ${PROJECT_SOURCE_DIR})
set(CPACK_TESSEL_LIBRARY_FOLDER ${PROJECT_BINARY_DIR}/src)
set(CPACK_TESSEL_TOOL ${PROJECT_BINARY_DIR}/tools/tessel)
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/debian_depends.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian_documents.cmake)
