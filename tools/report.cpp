#include "report.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "concat.h"

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

void PrintJsonListItem(std::string_view json) {
  static bool first = true;
  Print(Concat(first ? "\n" : ",\n", json));
  first = false;
}

void EndJsonList() { Print("\n]\n"); }

void ReportError(std::string_view where, std::string_view reason) {
  Flush();
  const std::string line = Concat("tessel: ", where, ": ", reason, '\n');
  std::fwrite(line.data(), 1, line.size(), stderr);
}

bool FinishOutput() {
  Flush();
  if (writeError == 0) return true;
  ReportError("standard output", Concat("cannot be written: ", std::strerror(writeError)));
  return false;
}

}  // namespace tool
