/* How tessel's names are exported and called. */
#ifndef TESSEL_PLATFORM_H
#define TESSEL_PLATFORM_H

/* TESSEL_API marks every exported name; TESSEL_CALL is the calling convention of every function: __stdcall on 32-bit
 * Windows, the platform's own elsewhere. TESSEL_BUILD is defined while the library itself is compiled. */
#if defined(_WIN32)
#if defined(TESSEL_BUILD)
#define TESSEL_API __declspec(dllexport)
#else
#define TESSEL_API __declspec(dllimport)
#endif
#else
#define TESSEL_API __attribute__((visibility("default")))
#endif

#if defined(_WIN32) && !defined(_WIN64)
#define TESSEL_CALL __stdcall
#else
#define TESSEL_CALL
#endif

#endif
