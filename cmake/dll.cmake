# tessel as a DLL. Its exports are the plain names of exports.txt, although __stdcall functions are symbols like
# _CreateCertificate@4 on 32-bit Windows: callers that look a name up while they run find the name that they know.
enable_language(RC)

set(version_of_file ${PROJECT_VERSION_MAJOR},${PROJECT_VERSION_MINOR},${PROJECT_VERSION_PATCH},0)
configure_file(tessel.rc.in tessel.rc @ONLY)

file(STRINGS exports.txt exported_names)
list(TRANSFORM exported_names REPLACE "Item$" "Item DATA")
list(JOIN exported_names "\n  " exported_names)
set(definition_file ${CMAKE_CURRENT_BINARY_DIR}/tessel.def)
file(CONFIGURE OUTPUT ${definition_file} CONTENT "EXPORTS\n  @exported_names@\n" @ONLY)

target_sources(tessel PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/tessel.rc ${definition_file})
set_target_properties(tessel PROPERTIES PREFIX "")
target_link_options(tessel PRIVATE -Wl,--kill-at -Wl,--enable-stdcall-fixup)

# The linker's own import library has the plain names for symbols too, which no compiled call refers to.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_custom_command(TARGET tessel POST_BUILD
    COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} -DDLLTOOL=${CMAKE_DLLTOOL}
      -DDLL=$<TARGET_FILE:tessel> -DIMPORT_LIBRARY=$<TARGET_LINKER_FILE:tessel> -DDEFINITIONS=${definition_file}
      -P ${PROJECT_SOURCE_DIR}/cmake/import_library.cmake
    VERBATIM)
endif()
