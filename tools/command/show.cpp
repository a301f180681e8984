#include "command/show.h"

#include <string>
#include <utility>

#include "asn1/decoding.h"
#include "command/kinds.h"
#include "command/report.h"
#include "facts/json.h"
#include "facts/text.h"
#include "texts/concat.h"

namespace tool {
namespace {

// What is told of an object that cannot be shown yet.
std::string NotYetShown(std::string_view what, const Input& input) {
  const std::optional<BerBreak> found = FindBreak(input.octets);
  return Concat(what, ", which tessel show does not show yet; ",
                found ? Concat("its octets are no sound BER: offset ", found->offset, ": ", found->reason)
                      : "tessel tree shows its elements");
}

// `problem`: what the kinds that were tried say; empty when none was.
std::string WhyNone(const Input& input, const std::string& problem) {
  if (problem.empty()) {
    const std::string_view kind = OtherKindOfLabel(*input.label);
    return NotYetShown(Concat("this is ", kind.empty() ? "a block of another kind" : kind), input);
  }
  const std::string_view kind = OtherKindOfElements(input.octets);
  if (!kind.empty()) return NotYetShown(Concat("this seems to be ", kind), input);
  return Concat(problem, "; tessel tree shows its elements");
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

// A PEM block says what it is; of other octets every kind is tried. Where none fits, the one is told of that came
// farthest.
void ShowBy(Printer print, const Input& input) {
  std::string problem;
  uint32_t farthest = 0;
  for (const Kind& kind : Kinds()) {
    if (input.label && !kind.HasLabel(*input.label)) continue;
    try {
      uint32_t end = 0;
      print(input, kind, DecodedFact(*kind.type, input.octets, &end));
      if (end == input.octets.size()) return;
      throw Refusal(Concat("offset ", end, ": the object is followed by ", OctetCount(input.octets.size() - end)));
    } catch (const DecodingError& error) {
      const Fault fault = error.Explained();
      if (fault.offset < farthest) continue;
      farthest = fault.offset;
      problem = Concat("not a ", kind.name, ": ", fault.Text());
    }
  }
  throw Refusal(WhyNone(input, problem));
}

}  // namespace

void ShowObject(const Input& input) { ShowBy(PrintAsText, input); }

void ShowObjectAsJson(const Input& input) { ShowBy(PrintAsJson, input); }

}  // namespace tool
