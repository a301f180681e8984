# What makes faults in the library and the tool harder to use for an attack: tessel_hardening is what they are compiled
# and linked with. A distribution's compiler, or the flags that a packager gives, may set some of it already.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)

option(TESSEL_HARDENING "Protect the stack, calls and relocations of the library and the tool" ON)

add_library(tessel_hardening INTERFACE)

# For files that go through every element of a tree. There only arrays are guarded, since a guard of all that has its
# address taken makes decoding slower by 6 to 9 %, and sizes of copies are not checked: none of those there is known to
# the compiler, and what it does otherwise makes encoding slower by 6 to 12 %.
function(harden_lightly)
  if(NOT TESSEL_HARDENING)
    return()
  endif()
  if(TESSEL_HAS_fstack_protector_strong)
    set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS -fstack-protector)
  endif()
  if(TESSEL_FORTIFY_IS_FREE)
    set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS -U_FORTIFY_SOURCE)
  endif()
endfunction()

if(NOT TESSEL_HARDENING)
  return()
endif()

if(WIN32)
  # No stack protector and no checks of copies: what MinGW has for them imports one more DLL, advapi32. The linker has
  # these by default in some versions.
  target_link_options(tessel_hardening INTERFACE -Wl,--dynamicbase -Wl,--nxcompat)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    target_link_options(tessel_hardening INTERFACE -Wl,--high-entropy-va)
  endif()
  return()
endif()

foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection)
  string(MAKE_C_IDENTIFIER "TESSEL_HAS${flag}" has_flag)
  check_cxx_compiler_flag(${flag} ${has_flag})
  target_compile_options(tessel_hardening INTERFACE $<$<BOOL:${${has_flag}}>:${flag}>)
endforeach()

# The C library checks the sizes of copies only in optimised code, and sanitizers do it better.
set(CMAKE_REQUIRED_FLAGS -O2)
check_cxx_source_compiles("
  #ifdef _FORTIFY_SOURCE
  #error it is set already
  #endif
  int main() {}" TESSEL_FORTIFY_IS_FREE)
unset(CMAKE_REQUIRED_FLAGS)
if(TESSEL_FORTIFY_IS_FREE AND NOT TESSEL_SANITIZE)
  target_compile_definitions(tessel_hardening INTERFACE $<$<NOT:$<CONFIG:Debug,>>:_FORTIFY_SOURCE=3>)
endif()

if(CMAKE_EXECUTABLE_FORMAT STREQUAL "ELF")
  target_link_options(tessel_hardening INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
  # A shadow stack suits the C library's start-up code, even where that does not say so. Whether indirect branches may be
  # checked is for that code to say: it is reached by some.
  if(CMAKE_SIZEOF_VOID_P EQUAL 8 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
    target_link_options(tessel_hardening INTERFACE -Wl,-z,shstk)
  endif()
endif()
