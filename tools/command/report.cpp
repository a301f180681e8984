#include "command/report.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

#include "tessel/error.hpp"
#include "texts/concat.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace tool {
namespace {

// The errno of the first write that failed. Later ones fail for the same reason, or fail because this one did.
int writeError = 0;

void NoteWriteError(bool written) {
  if (!written && writeError == 0) writeError = errno != 0 ? errno : EIO;
}

void Flush() { NoteWriteError(std::fflush(stdout) == 0); }

}  // namespace

void UseBinaryStreams() {
#ifdef _WIN32
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  // Windows does not buffer what goes to a console or to NUL.
  std::setvbuf(stdout, nullptr, _IOFBF, 65536);
#endif
}

void Print(std::string_view text) {
  if (writeError != 0) return;
  NoteWriteError(std::fwrite(text.data(), 1, text.size(), stdout) == text.size());
}

void PrintHeading(std::string_view heading) {
  static bool first = true;
  if (!first) Print("\n");
  first = false;
  Print(Concat(heading, '\n'));
}

void StartJsonList() { Print("["); }

void StartJsonListItem() {
  static bool first = true;
  Print(first ? "\n" : ",\n");
  first = false;
}

void EndJsonList() { Print("\n]\n"); }

void ReportError(std::string_view where, std::string_view reason) {
  Flush();
  // This takes no memory, of which there may be none.
  std::fprintf(stderr, "tessel: %.*s: %.*s\n", static_cast<int>(where.size()), where.data(),
               static_cast<int>(reason.size()), reason.data());
}

void ReportException(std::string_view where) {
  const std::string_view noMemory = tessel::StatusText(TESSEL_OUT_OF_MEMORY);
  try {
    throw;
  } catch (const std::bad_alloc&) {
    ReportError(where, noMemory);
  } catch (const std::length_error&) {  // of a text or vector that would be larger than any memory
    ReportError(where, noMemory);
  } catch (const tessel::Error& error) {
    ReportError(where, tessel::StatusText(error.Status()));
  } catch (const std::exception& error) {
    ReportError(where, error.what());
  }
}

bool FinishOutput() {
  Flush();
  if (writeError == 0) return true;
  ReportError("standard output", Concat("cannot be written: ", std::strerror(writeError)));
  return false;
}

}  // namespace tool
