#include "memory/failing.h"

#include <dlfcn.h>

namespace test {
namespace {

std::set<std::string>& Names() {
  static std::set<std::string> names;
  return names;
}
uint64_t failures = 0;

}  // namespace

const std::set<std::string>& Caller::MadeToFail() { return Names(); }
uint64_t Caller::Failures() { return failures; }

std::string Caller::Called(void* function) {
  Dl_info info{};
  const bool isKnown = dladdr(function, &info) != 0 && info.dli_saddr == function;
  return isKnown ? info.dli_sname : "a function without a name";
}

void Caller::NoteFailure(void* function) {
  ++failures;
  Names().insert(Called(function));
}

}  // namespace test
