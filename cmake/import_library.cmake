# Makes the import library of a 32-bit DLL: each symbol is decorated, as callers are compiled (_CreateCertificate@4), and
# stands for the plain name that the DLL exports. NM, DLLTOOL, DLL, IMPORT_LIBRARY and DEFINITIONS are given.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${NM} --defined-only ${DLL} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL " T _[A-Za-z0-9_]+@[0-9]+\n" symbols "${symbols}")
foreach(symbol IN LISTS symbols)
  string(REGEX MATCH "_([A-Za-z0-9_]+)(@[0-9]+)" symbol "${symbol}")
  set(decoration_of_${CMAKE_MATCH_1} ${CMAKE_MATCH_2})
endforeach()

file(STRINGS ${DEFINITIONS} lines REGEX "^  ")
set(decorated "EXPORTS\n")
foreach(line IN LISTS lines)
  string(REGEX MATCH "[A-Za-z0-9_]+" name "${line}")
  if(NOT line MATCHES " DATA$" AND NOT DEFINED decoration_of_${name})
    message(FATAL_ERROR "${name} is not a __stdcall function")
  endif()
  string(REPLACE "${name}" "${name}${decoration_of_${name}}" line "${line}")
  string(APPEND decorated "${line}\n")
endforeach()
file(WRITE ${DEFINITIONS}.decorated "${decorated}")

cmake_path(GET DLL FILENAME dll_name)
execute_process(COMMAND ${DLLTOOL} --kill-at --dllname ${dll_name} --input-def ${DEFINITIONS}.decorated
    --output-lib ${IMPORT_LIBRARY} COMMAND_ERROR_IS_FATAL ANY)
