#include <string>
#include <string_view>

#include "facts/fact.h"
#include "texts/concat.h"

namespace tool {
namespace {

constexpr size_t kStep = 2;

// Hands out the parts that people see. Those of a part with neither label nor text stand in its place.
bool VisitSeen(const Fact& fact, const FactSink& sink) {
  return fact.VisitParts([&sink](const Fact& part) {
    if (part.hidden) return true;
    return part.label.empty() && part.text.empty() ? VisitSeen(part, sink) : sink(part);
  });
}

bool HasSeenParts(const Fact& fact) {
  return !VisitSeen(fact, [](const Fact&) { return false; });
}

std::string Labelled(std::string_view label, std::string_view text) {
  if (label.empty()) return std::string(text);
  return text.empty() ? Concat(label, ':') : Concat(label, ": ", text);
}

// What stands behind the label of a fact: its text, or, behind a mere label, the single line that would stand below.
struct Line {
  explicit Line(const Fact& fact) : text(fact.text) {
    if (!text.empty()) return;
    size_t count = 0;
    const bool isAll = VisitSeen(fact, [&](const Fact& part) {
      hasJoined = ++count == 1 && !HasSeenParts(part);
      if (hasJoined) text = Labelled(part.label, part.text);
      return hasJoined;
    });
    hasJoined = hasJoined && isAll;
    if (!hasJoined) text.clear();
  }

  std::string text;
  bool hasJoined = false;
};

}  // namespace

void WriteLines(const Fact& fact, size_t indent, const TextSink& write) {
  size_t width = 0;
  VisitSeen(fact, [&width](const Fact& part) {
    if (part.label.size() > width && !Line(part).text.empty()) width = part.label.size();
    return true;
  });
  VisitSeen(fact, [&](const Fact& part) {
    const Line line(part);
    const size_t gap = part.label.empty() || line.text.empty() ? 0 : width - part.label.size();
    const std::string text = line.text.empty() ? line.text : Concat(std::string(gap, ' '), line.text);
    write(Concat(std::string(indent, ' '), Labelled(part.label, text), '\n'));
    if (!line.hasJoined) WriteLines(part, indent + kStep, write);
    return true;
  });
}

}  // namespace tool
