#include <algorithm>
#include <string>
#include <utility>

#include "asn1/decoding.h"
#include "command/commands.h"
#include "command/kinds.h"
#include "command/report.h"
#include "facts/json.h"
#include "facts/text.h"
#include "texts/concat.h"

namespace tool {
namespace {

// What is told of an object that cannot be shown yet.
Refusal NotYetShown(std::string_view what, const Input& input) {
  const std::optional<BerBreak> found = FindBreak(input.octets);
  return Refusal(Concat("this ", what, ", which tessel show does not show yet; ",
                        found ? Concat("its octets are no sound BER: offset ", found->offset, ": ", found->reason)
                              : "tessel tree shows its elements"));
}

using Printer = void (*)(const Input& input, const Kind& kind, Fact&& fact);

void PrintAsText(const Input& input, const Kind& kind, Fact&& fact) {
  constexpr size_t kIndent = 2;
  PrintHeading(input.label ? input.where : Concat(input.where, ": ", kind.name));
  WriteLines(fact, kIndent, Print);
}

void PrintAsJson(const Input& input, const Kind& kind, Fact&& fact) {
  Fact whole = Fact::Object();
  whole.Hide("file", input.file);
  whole.Hide("index", static_cast<int64_t>(input.index));
  whole.Hide("line", input.line ? Scalar(static_cast<int64_t>(*input.line)) : Scalar());
  whole.Hide("kind", std::string(kind.name));
  for (Fact& part : fact.parts) whole.parts.push_back(std::move(part));
  MakeForJson(whole);
  StartJsonListItem();
  WriteJson(whole, Print);
}

// False when the octets do not decode as an object of this kind, with the fault.
bool ShowAs(const Kind& kind, Printer print, const Input& input, Fault& fault) {
  uint32_t end = 0;
  try {
    print(input, kind, DecodedFact(*kind.type, input.octets, &end));
  } catch (const DecodingError& error) {
    fault = error.Explained();
    return false;
  }
  if (end == input.octets.size()) return true;
  throw Refusal(Concat("offset ", end, ": the object is followed by ", OctetCount(input.octets.size() - end)));
}

// Tries every kind. Where none fits, the one is told of that came farthest.
void ShowBy(Printer print, const Input& input) {
  const Kind* labelled = input.label ? KindOfLabel(*input.label) : nullptr;
  if (input.label && labelled == nullptr) throw NotYetShown("is a block of another kind", input);
  if (labelled != nullptr && labelled->type == nullptr) {
    throw NotYetShown(Concat("is ", WithArticle(labelled->name)), input);
  }
  std::string problem;
  uint32_t farthest = 0;
  for (const Kind& kind : Kinds()) {
    if (kind.type == nullptr || (labelled != nullptr && labelled != &kind)) continue;
    Fault fault;
    if (ShowAs(kind, print, input, fault)) return;
    if (fault.offset >= farthest) problem = Concat("not ", WithArticle(kind.name), ": ", fault.Text());
    farthest = std::max(farthest, fault.offset);
  }
  const Kind* other = KindOfElements(input.octets);
  const bool isNotYetShown = other != nullptr && other->type == nullptr;
  if (isNotYetShown) throw NotYetShown(Concat("seems to be ", WithArticle(other->name)), input);
  throw Refusal(Concat(problem, "; tessel tree shows its elements"));
}

}  // namespace

void ShowObject(const Input& input) { ShowBy(PrintAsText, input); }

void ShowObjectAsJson(const Input& input) { ShowBy(PrintAsJson, input); }

}  // namespace tool
