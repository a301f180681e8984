#include "fact_text.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "concat.h"
#include "report.h"

namespace tool {
namespace {

constexpr size_t kStep = 2;

using Seen = std::vector<const Fact*>;

void CollectSeen(const Fact& fact, Seen& seen) {
  for (const Fact& part : fact.parts) {
    if (part.hidden) continue;
    if (part.label.empty() && part.text.empty()) {
      CollectSeen(part, seen);
    } else {
      seen.push_back(&part);
    }
  }
}

Seen SeenPartsOf(const Fact& fact) {
  Seen seen;
  CollectSeen(fact, seen);
  return seen;
}

std::string Labelled(std::string_view label, std::string_view text) {
  if (label.empty()) return std::string(text);
  return text.empty() ? Concat(label, ':') : Concat(label, ": ", text);
}

// How a fact is laid out: its line, and what goes below. A single line below a mere label joins the label.
struct Layout {
  explicit Layout(const Fact& fact) : text(fact.text), below(SeenPartsOf(fact)) {
    if (!text.empty() || below.size() != 1 || !SeenPartsOf(*below.front()).empty()) return;
    text = Labelled(below.front()->label, below.front()->text);
    below.clear();
  }

  std::string text;
  Seen below;
};

void PrintAll(const Seen& facts, size_t indent) {
  size_t width = 0;
  for (const Fact* fact : facts) {
    if (!Layout(*fact).text.empty()) width = std::max(width, fact->label.size());
  }
  for (const Fact* fact : facts) {
    const Layout it(*fact);
    const size_t gap = fact->label.empty() || it.text.empty() ? 0 : width - fact->label.size();
    const std::string text = it.text.empty() ? it.text : Concat(std::string(gap, ' '), it.text);
    Print(Concat(std::string(indent, ' '), Labelled(fact->label, text), '\n'));
    PrintAll(it.below, indent + kStep);
  }
}

}  // namespace

void PrintLines(const Fact& fact, size_t indent) { PrintAll(SeenPartsOf(fact), indent); }

}  // namespace tool
