#include "command/show.h"

#include <string>
#include <utility>
#include <vector>

#include "asn1/decoding.h"
#include "command/kinds.h"
#include "command/report.h"
#include "facts/json.h"
#include "facts/text.h"
#include "texts/concat.h"

namespace tool {
namespace {

using Candidates = std::vector<const Kind*>;

// A PEM block says what it is; of other octets every kind is tried.
Candidates CandidatesFor(const Input& input) {
  Candidates candidates;
  for (const Kind& kind : Kinds()) {
    if (!input.label || kind.HasLabel(*input.label)) candidates.push_back(&kind);
  }
  return candidates;
}

// What is told of an object that cannot be shown yet.
std::string NotYetShown(std::string_view what, const Input& input) {
  const std::optional<BerBreak> found = FindBreak(input.octets);
  return Concat(what, ", which tessel show does not show yet; ",
                found ? Concat("its octets are no sound BER: offset ", found->offset, ": ", found->reason)
                      : "tessel tree shows its elements");
}

std::string WhyNoKind(const Input& input) {
  const std::string_view kind = OtherKindOfLabel(*input.label);
  return NotYetShown(kind.empty() ? "this is a block of another kind" : Concat("this is ", kind), input);
}

std::string Names(const Candidates& candidates) {
  std::string names;
  for (const Kind* kind : candidates) names += Concat(names.empty() ? "" : " or ", kind->name);
  return names;
}

// Where the first element itself is no sound BER, that place tells more than the kind that it was taken for.
std::string WhyNone(const Input& input, const Candidates& candidates, std::string_view problem) {
  Walk walk(input.octets);
  for (Element element; walk.Next(element) && walk.Depth() != 0;) continue;
  if (walk.Break()) return Concat("offset ", walk.Break()->offset, ": ", problem, ": ", walk.Break()->reason);
  const std::string_view other = OtherKindOfElements(input.octets);
  if (!other.empty()) return NotYetShown(Concat("this seems to be ", other), input);
  return Concat("not a ", Names(candidates), ": ", problem, "; tessel tree shows its elements");
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

void ShowBy(Printer print, const Input& input) {
  const Candidates candidates = CandidatesFor(input);
  if (candidates.empty()) throw Refusal(WhyNoKind(input));
  std::string_view problem;
  for (const Kind* kind : candidates) {
    try {
      uint32_t end = 0;
      print(input, *kind, DecodedFact(*kind->type, input.octets, &end));
      if (end == input.octets.size()) return;
      throw Refusal(Concat("offset ", end, ": the object is followed by ", OctetCount(input.octets.size() - end)));
    } catch (const DecodingError& error) {
      if (problem.empty()) problem = error.Problem();
    }
  }
  throw Refusal(WhyNone(input, candidates, problem));
}

}  // namespace

void ShowObject(const Input& input) { ShowBy(PrintAsText, input); }

void ShowObjectAsJson(const Input& input) { ShowBy(PrintAsJson, input); }

}  // namespace tool
