#include "facts/fact.h"

#include <algorithm>
#include <utility>

namespace tool {

Fact Fact::Of(std::string text, Scalar value) {
  Fact fact;
  fact.text = std::move(text);
  fact.value = std::move(value);
  return fact;
}

Fact Fact::Flag(bool flag) { return Of(flag ? "yes" : "no", flag); }

Fact Fact::Object(std::string text) {
  Fact fact;
  fact.text = std::move(text);
  fact.shape = Shape::kObject;
  return fact;
}

Fact Fact::List(LentFacts elements) {
  Fact fact;
  fact.shape = Shape::kList;
  fact.lentParts = std::move(elements);
  return fact;
}

void Fact::Add(std::string_view partKey, std::string_view partLabel, Fact part) {
  part.key = partKey;
  part.label = partLabel;
  parts.push_back(std::move(part));
}

void Fact::HideParts() {
  for (Fact& part : parts) part.hidden = true;
}

void Fact::TakeParts(Fact other) {
  for (Fact& part : other.parts) {
    if (other.lender) part.Keep(std::pair(part.lender, other.lender));
    parts.push_back(std::move(part));
  }
}

bool Fact::VisitParts(const FactSink& sink) const {
  return std::ranges::all_of(parts, sink) && (!lentParts || lentParts(sink));
}

bool Fact::HasParts() const {
  return !VisitParts([](const Fact&) { return false; });
}

void Fact::TellIfEmpty() {
  if (text.empty() && !HasParts()) text = "(empty)";
}

void Fact::Hide(std::string_view partKey, Fact part) {
  part.hidden = true;
  Add(partKey, {}, std::move(part));
}

void Fact::Hide(std::string_view partKey, Scalar partValue) { Hide(partKey, Of({}, std::move(partValue))); }

}  // namespace tool
