# What `cmake --install` puts where, and how other projects find it: pkg-config and find_package(tessel). Packages are
# made of the components: the library, what developers need beside it, the tool.
include(CMakePackageConfigHelpers)

set_target_properties(tessel_tool PROPERTIES
  INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

install(TARGETS tessel EXPORT tessel-targets
  RUNTIME COMPONENT library
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(TARGETS tessel_tool COMPONENT tool)
install(DIRECTORY include/tessel TYPE INCLUDE COMPONENT development)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tessel)
install(EXPORT tessel-targets NAMESPACE tessel:: FILE tessel-config.cmake DESTINATION ${package_dir}
  COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tessel-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tessel-config-version.cmake DESTINATION ${package_dir} COMPONENT development)

file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/tessel.pc.in tessel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tessel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(FILES docs/guide.md docs/deviations.md TYPE DOC COMPONENT development)
install(DIRECTORY docs/examples TYPE DOC COMPONENT development FILES_MATCHING PATTERN "*.[ch]" PATTERN "*.cpp")

if(WIN32)
  # The module definition file: for linkers that make an import library of their own.
  get_target_property(definitions tessel SOURCES)
  list(FILTER definitions INCLUDE REGEX "\\.def$")
  install(FILES ${definitions} TYPE LIB COMPONENT development)
else()
  install(FILES docs/tessel.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  install(FILES tools/completion.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME tessel
    COMPONENT tool)
endif()
