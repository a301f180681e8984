# What `cmake --install` puts where, and how other projects find it: pkg-config and find_package(tessel).
include(CMakePackageConfigHelpers)

set_target_properties(tessel_tool PROPERTIES
  INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

install(TARGETS tessel EXPORT tessel-targets)
install(TARGETS tessel_tool)
install(DIRECTORY include/tessel TYPE INCLUDE)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tessel)
install(EXPORT tessel-targets NAMESPACE tessel:: FILE tessel-config.cmake DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tessel-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tessel-config-version.cmake DESTINATION ${package_dir})

file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/tessel.pc.in tessel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tessel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
