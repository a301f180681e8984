# Run by cpack when it starts: tells what the binaries depend on. cpack could ask dpkg-shlibdeps by itself, but then
# adds scripts that call ldconfig, where Debian wants the trigger.
function(find_dependencies binary result)
  execute_process(
    COMMAND dpkg-shlibdeps -O -L${CPACK_TESSEL_CONTROL_FOLDER}/shlibs -l${CPACK_TESSEL_LIBRARY_FOLDER} ${binary}
    WORKING_DIRECTORY ${CPACK_TESSEL_CONTROL_FOLDER}/..
    OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE "^shlibs:Depends=" "" found "${found}")
  set(${result} "${found}" PARENT_SCOPE)
endfunction()

find_dependencies(${CPACK_TESSEL_LIBRARY_FOLDER}/libtessel.so CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS)
find_dependencies(${CPACK_TESSEL_TOOL} CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS)
