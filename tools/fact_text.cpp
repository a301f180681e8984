#include "fact_text.h"

#include <algorithm>
#include <string_view>

#include "concat.h"

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
  explicit Layout(const Fact& fact) : label(fact.label), text(fact.text), below(SeenPartsOf(fact)) {
    if (!text.empty() || below.size() != 1 || !SeenPartsOf(*below.front()).empty()) return;
    text = Labelled(below.front()->label, below.front()->text);
    below.clear();
  }

  std::string_view label;
  std::string text;
  Seen below;
};

void AppendLines(std::string& lines, const Seen& facts, size_t indent) {
  const std::vector<Layout> layouts = [&] {
    std::vector<Layout> all;
    for (const Fact* fact : facts) all.emplace_back(*fact);
    return all;
  }();
  size_t width = 0;
  for (const Layout& it : layouts) {
    if (!it.text.empty()) width = std::max(width, it.label.size());
  }
  for (const Layout& it : layouts) {
    const size_t gap = it.label.empty() || it.text.empty() ? 0 : width - it.label.size();
    lines.append(indent, ' ');
    lines += Labelled(it.label, it.text.empty() ? it.text : Concat(std::string(gap, ' '), it.text));
    lines += '\n';
    AppendLines(lines, it.below, indent + kStep);
  }
}

}  // namespace

std::string TextLines(const Fact& fact, size_t indent) {
  std::string lines;
  AppendLines(lines, SeenPartsOf(fact), indent);
  return lines;
}

}  // namespace tool
