// Where the tool's output goes: results to standard output, errors to standard error.
#pragma once

#include <stdexcept>
#include <string_view>

namespace tool {

// Why an input is refused: a sentence for the user.
class Refusal : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Makes standard input and output carry octets as they are, on systems that would otherwise change them.
void UseBinaryStreams();

void Print(std::string_view text);

// Prints the line under which an input is shown, apart from what was shown before.
void PrintHeading(std::string_view heading);

// Prints what stands around and between the values of a JSON list.
void StartJsonList();
void StartJsonListItem();
void EndJsonList();

// Writes `tessel: WHERE: REASON` in one line, after all that has been printed until now.
void ReportError(std::string_view where, std::string_view reason);

// Reports the exception that is being handled.
void ReportException(std::string_view where);

// Runs `step`, and reports what it throws. False when it has thrown.
template <typename Step>
bool Attempt(std::string_view where, Step step) {
  try {
    step();
    return true;
  } catch (...) {
    ReportException(where);
    return false;
  }
}

// Flushes standard output. When not everything could be written, reports that and returns false.
bool FinishOutput();

}  // namespace tool
