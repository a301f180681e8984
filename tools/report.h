// Where the tool's output goes: results to standard output, errors to standard error.
#pragma once

#include <string_view>

namespace tool {

// Makes standard input and output carry octets as they are, on systems that would otherwise change them.
void UseBinaryStreams();

void Print(std::string_view text);

// Prints the line under which an input is shown, apart from what was shown before.
void PrintHeading(std::string_view heading);

// Prints a list of JSON values: its start, each of its values, its end.
void StartJsonList();
void PrintJsonListItem(std::string_view json);
void EndJsonList();

// Writes `tessel: WHERE: REASON` in one line, after all that has been printed until now.
void ReportError(std::string_view where, std::string_view reason);

// Flushes standard output. When not everything could be written, reports that and returns false.
bool FinishOutput();

}  // namespace tool
