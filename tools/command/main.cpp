// The command line.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "command/commands.h"
#include "command/input.h"
#include "command/report.h"
#include "tessel/calls.hpp"
#include "tessel/strings.hpp"
#include "texts/concat.h"

namespace tool {
namespace {

constexpr int kUsageError = 2;

constexpr std::string_view kUsage =
    "usage: tessel show FILE...         show certificates\n"
    "       tessel show --json FILE...  show them for programs: a JSON list with an object for each\n"
    "       tessel tree FILE...         show the elements of any BER: offset, header length, content length, element\n"
    "       tessel help                 print this text, as --help and -h do, also after a command\n"
    "       tessel --version            print the versions of the command and of the library\n"
    "\n"
    "A FILE is PEM, BER, DER or bare Base64; - is standard input. What follows -- is no option.\n"
    "Exit status: 0 when everything was shown, 1 when an input or the output failed, 2 for a wrong command line.\n";

using Arguments = std::span<char* const>;

struct Command {
  std::string_view name;
  InputHandler handle;
  InputHandler handleAsJson;  // null: the command has no such form
};

constexpr Command kCommands[] = {{"show", ShowObject, ShowObjectAsJson}, {"tree", ShowTree, nullptr}};

int RejectUsage(const std::string& sentence) {
  const std::string text = Concat("tessel: ", sentence, "; see tessel --help\n");
  std::fwrite(text.data(), 1, text.size(), stderr);
  return kUsageError;
}

bool IsOption(std::string_view argument) { return argument.size() > 1 && argument.front() == '-'; }
bool IsHelp(std::string_view argument) { return argument == "--help" || argument == "-h"; }

int PrintOnly(std::string_view text) {
  Print(text);
  return FinishOutput() ? EXIT_SUCCESS : EXIT_FAILURE;
}

bool HandleAll(const std::vector<const char*>& files, InputHandler handle) {
  bool good = true;
  for (const char* file : files) good = HandleFile(file, handle) && good;
  return good;
}

bool HandleAllAsJson(const std::vector<const char*>& files, InputHandler handle) {
  StartJsonList();
  const bool good = HandleAll(files, handle);
  EndJsonList();
  return good;
}

int Run(const Command& command, Arguments arguments) {
  bool json = false;
  bool options = true;
  std::vector<const char*> files;
  for (const char* argument : arguments) {
    const std::string_view word = argument;
    if (!options || !IsOption(word)) {
      files.push_back(argument);
    } else if (IsHelp(word)) {
      return PrintOnly(kUsage);
    } else if (word == "--") {
      options = false;
    } else if (command.handleAsJson != nullptr && word == "--json") {
      json = true;
    } else {
      return RejectUsage(Concat("there is no option ", tessel::Printable(word)));
    }
  }
  if (files.empty()) return RejectUsage(Concat("the command ", command.name, " needs a file"));
  const bool good = json ? HandleAllAsJson(files, command.handleAsJson) : HandleAll(files, command.handle);
  return FinishOutput() && good ? EXIT_SUCCESS : EXIT_FAILURE;
}

std::string Version() { return Concat("tessel ", TESSEL_PROJECT_VERSION, '\n', tessel::Fetch(GetVersionInfo), '\n'); }

bool LooksLikeFile(const char* word) {
  std::error_code ignored;
  return std::string_view(word).find_first_of("./\\") != std::string_view::npos ||
         std::filesystem::exists(word, ignored);
}

int RejectCommand(const char* word) {
  const std::string shown = tessel::Printable(word);
  if (IsOption(word)) return RejectUsage(Concat("there is no option ", shown));
  const bool isFile = std::string_view(word) == "-" || LooksLikeFile(word);
  const std::string advice = isFile ? Concat(", but there is tessel show ", shown) : "";
  return RejectUsage(Concat("there is no command ", shown, advice));
}

int Main(Arguments arguments) {
  UseBinaryStreams();
  if (arguments.empty()) return RejectUsage("a command is missing");
  const std::string_view first = arguments.front();
  if (IsHelp(first) || first == "help") return PrintOnly(kUsage);
  if (first == "--version") return PrintOnly(Version());
  for (const Command& command : kCommands) {
    if (first == command.name) return Run(command, arguments.subspan(1));
  }
  return RejectCommand(arguments.front());
}

}  // namespace
}  // namespace tool

int main(int argc, char** argv) {
  // Where there is no memory for an exception either.
  std::set_terminate([] {
    std::fputs("tessel: there is not enough memory\n", stderr);
    std::_Exit(EXIT_FAILURE);
  });
  try {
    const tool::Arguments all(argv, static_cast<size_t>(argc));
    return tool::Main(all.empty() ? all : all.subspan(1));
  } catch (const std::bad_alloc&) {  // before the first input, or beside the inputs
    std::fputs("tessel: there is not enough memory\n", stderr);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tessel: %s\n", error.what());
  }
  return EXIT_FAILURE;
}
