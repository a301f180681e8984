/* The pattern of the examples: each call is checked, each function has one end, and releases there what it holds. */
#ifndef EXAMPLE_H
#define EXAMPLE_H

#include <stdio.h>
#include <stdlib.h>
#include <tessel/tessel.h>

/* Octets on the heap; {NULL, 0} before they are fetched. */
typedef struct Octets {
  uint8_t* data;
  uint32_t length;
} Octets;

/* When the call fails, goes to `done`, where the function releases what it holds and returns its `status`. */
#define TRY(call)                                  \
  do {                                             \
    if ((status = (call)) != TESSEL_OK) goto done; \
  } while (0)

/* Ask, then fetch: calls with octets.data null, makes the room that was asked for, and calls again. */
#define FETCH(octets, call)                                        \
  do {                                                             \
    free((octets).data);                                           \
    (octets).data = NULL;                                          \
    TRY(call);                                                     \
    (octets).data = (uint8_t*)malloc((octets).length + (size_t)1); \
    TRY((octets).data != NULL ? TESSEL_OK : TESSEL_OUT_OF_MEMORY); \
    TRY(call);                                                     \
  } while (0)

/* Tells a status, and of a failure the place. */
static inline void PrintStatus(FILE* file, uint32_t status) {
  uint32_t line = 0;
  const char* module = GetLastFileErrorAsn(&line);
  fprintf(file, "status %u", status);
  if (status != TESSEL_OK && module != NULL) fprintf(file, ", found at %s:%u", module, line);
  fprintf(file, "\n");
}

/* What main returns. */
static inline int ExitCode(uint32_t status) {
  if (status != TESSEL_OK) PrintStatus(stderr, status);
  return status == TESSEL_OK && fflush(stdout) == 0 && !ferror(stdout) ? EXIT_SUCCESS : EXIT_FAILURE;
}

#endif
