#include <algorithm>
#include <string>
#include <utility>

#include "asn1/decoding.h"
#include "command/commands.h"
#include "command/kinds.h"
#include "command/report.h"
#include "facts/fact.h"
#include "texts/concat.h"

namespace tool {
namespace {

// What a kind's `starts` are compared with. Empty for octets that are no sound BER.
std::string StartOf(Octets octets) {
  constexpr size_t kLongest = 20;
  std::string members;
  std::string first;
  Walk walk(octets);
  for (Element element; walk.Next(element);) {
    const std::string identifier = element.IsEndOfContents() ? "" : tessel::Hex(octets.subspan(element.offset, 1));
    if (element.depth == 1 && members.size() < kLongest) members += identifier;
    if (element.depth == 2 && members.size() == 2 && first.size() < kLongest) first += identifier;
    if (walk.Depth() == 0) return Concat(members, '/', first, '.');
  }
  return {};
}

template <class IsOf>
const Kind* FindKind(IsOf isOf) {
  const auto* found = std::ranges::find_if(kKinds, isOf);
  return found == std::end(kKinds) ? nullptr : found;
}

// The kind of PEM blocks with this label; null when it is not known.
const Kind* KindOfLabel(std::string_view label) {
  return FindKind([label](const Kind& kind) {
    return std::ranges::any_of(kind.labels, [&](std::string_view known) {
      return !known.empty() && (kind.type == nullptr ? label.ends_with(known) : label == known);
    });
  });
}

// The kind that sound BER seems to be of by its first elements; null when that is not known.
const Kind* KindOfElements(Octets octets) {
  return FindKind([start = StartOf(octets)](const Kind& kind) {
    return std::ranges::any_of(kind.starts,
                               [&](std::string_view known) { return !known.empty() && start.starts_with(known); });
  });
}

// What is told of an object that cannot be shown yet.
Refusal NotYetShown(std::string_view what, const Input& input) {
  const std::optional<Fault> found = FindBreak(input.octets);
  return Refusal(
      Concat("this ", what, ", which tessel show does not show yet; ",
             found ? Concat("its octets are no sound BER: ", found->Text()) : "tessel tree shows its elements"));
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
  for (const Kind& kind : kKinds) {
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
