#include "show.h"

#include <string>
#include <utility>
#include <vector>

#include "concat.h"
#include "fact_json.h"
#include "fact_text.h"
#include "kinds.h"
#include "report.h"
#include "status_text.h"
#include "tessel/tessel.h"
#include "text.h"

namespace tool {
namespace {

using Candidates = std::vector<const Kind*>;

// An object with the kind that knows how to describe and release it.
class Decoded {
 public:
  Decoded(const Kind& kind, void* object) : kind_(kind), object_(object) {}
  ~Decoded() { kind_.release(object_); }
  Decoded(const Decoded&) = delete;
  Decoded& operator=(const Decoded&) = delete;

  [[nodiscard]] Fact Describe() const { return kind_.describe(object_); }

 private:
  const Kind& kind_;
  void* object_;
};

bool Refuse(const Input& input, uint32_t offset, const std::string& reason) {
  ReportError(input.where, Concat("offset ", offset, ": ", reason));
  return false;
}

// A PEM block says what it is; of other octets every kind is tried.
Candidates CandidatesFor(const Input& input) {
  Candidates candidates;
  for (const Kind& kind : Kinds()) {
    if (!input.label || kind.HasLabel(*input.label)) candidates.push_back(&kind);
  }
  return candidates;
}

// Finds the end of the element at the start. The octets behind a decoded object are not looked at by its decoder.
bool CheckTrailingOctets(const Input& input) {
  static const Asn1Item kAnyElement = {0, TESSEL_KIND_ANY, -1, 0, nullptr, 0, nullptr};
  const auto size = static_cast<uint32_t>(input.octets.size());
  void* element = nullptr;
  uint32_t end = 0;
  const uint32_t status = Asn1DecodeItem(input.octets.data(), size, &kAnyElement, &element, &end);
  FreeAsn1Object(&kAnyElement, element);
  if (status != TESSEL_OK)
    return Refuse(input, 0, Concat("the end of the object cannot be found: ", StatusText(status)));
  if (end == size) return true;
  return Refuse(input, end, Concat("the object is followed by ", OctetCount(size - end)));
}

std::string Names(const Candidates& candidates) {
  std::string names;
  for (const Kind* kind : candidates) names += Concat(names.empty() ? "" : " or ", kind->name);
  return names;
}

// Where the first element itself is no sound BER, that place tells more than the kind that it was taken for.
bool ExplainFailure(const Input& input, const Candidates& candidates, uint32_t status) {
  Walk walk(input.octets);
  for (Element element; walk.Next(element) && walk.Depth() != 0;) continue;
  const std::string meaning = StatusText(status);
  if (walk.Break()) return Refuse(input, walk.Break()->offset, Concat(meaning, ": ", walk.Break()->reason));
  return Refuse(input, 0, Concat("not a ", Names(candidates), ": ", meaning));
}

using Printer = void (*)(const Input& input, const Kind& kind, const Fact& fact);

void PrintText(const Input& input, const Kind& kind, const Fact& fact) {
  constexpr size_t kIndent = 2;
  PrintHeading(input.label ? input.where : Concat(input.where, ": ", kind.name));
  Print(TextLines(fact, kIndent));
}

void PrintJson(const Input& input, const Kind& kind, const Fact& fact) {
  Fact whole = Fact::Object();
  whole.Hide("where", input.where);
  whole.Hide("kind", std::string(kind.name));
  whole.parts.insert(whole.parts.end(), fact.parts.begin(), fact.parts.end());
  PrintJsonListItem(Json(whole));
}

bool ShowBy(Printer print, const Input& input) {
  const Candidates candidates = CandidatesFor(input);
  if (candidates.empty()) {
    ReportError(input.where, Concat("blocks labelled \"", Printable(*input.label), "\" are not supported"));
    return false;
  }
  uint32_t firstFailure = TESSEL_OK;
  for (const Kind* kind : candidates) {
    void* object = nullptr;
    const uint32_t status = kind->decode(input.octets, &object);
    if (status == TESSEL_OK) {
      print(input, *kind, Decoded(*kind, object).Describe());
      return CheckTrailingOctets(input);
    }
    if (firstFailure == TESSEL_OK) firstFailure = status;
  }
  return ExplainFailure(input, candidates, firstFailure);
}

}  // namespace

bool ShowObject(const Input& input) { return ShowBy(PrintText, input); }

bool ShowObjectAsJson(const Input& input) { return ShowBy(PrintJson, input); }

}  // namespace tool
