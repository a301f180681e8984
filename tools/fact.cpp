#include "fact.h"

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

Fact Fact::List(std::string text) {
  Fact fact;
  fact.text = std::move(text);
  fact.shape = Shape::kList;
  return fact;
}

void Fact::Add(std::string_view partKey, std::string_view partLabel, Fact part) {
  part.key = partKey;
  part.label = partLabel;
  parts.push_back(std::move(part));
}

void Fact::Append(Fact element) { parts.push_back(std::move(element)); }

void Fact::TellIfEmpty() {
  if (text.empty() && parts.empty()) text = "(empty)";
}

void Fact::Hide(std::string_view partKey, Fact part) {
  part.hidden = true;
  Add(partKey, {}, std::move(part));
}

void Fact::Hide(std::string_view partKey, Scalar partValue) { Hide(partKey, Of({}, std::move(partValue))); }

void Fact::AppendHidden(Scalar element) {
  Append(Of({}, std::move(element)));
  parts.back().hidden = true;
}

}  // namespace tool
