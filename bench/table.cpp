// The printing half of table.h.
#include "table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <set>
#include <span>

namespace bench {
namespace {

constexpr size_t kColumns = 5;
constexpr size_t kTextColumns = 2;
using Line = std::array<std::string, kColumns>;

std::string Formatted(const char* format, double value) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

// To three digits, or to the whole number: 1.23, 12.3, 123, 12,345.
std::string Rounded(double value) {
  if (value < 9.995) return Formatted("%.2f", value);
  if (value < 99.95) return Formatted("%.1f", value);
  return Grouped(static_cast<uint64_t>(std::llround(value)));
}

// Characters, not octets, as a fixed-width font shows them.
size_t WidthOf(const std::string& text) {
  return static_cast<size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string Padded(const std::string& text, size_t width, size_t column) {
  const std::string gap(width - WidthOf(text), ' ');
  return column < kTextColumns ? text + gap : gap + text;
}

// Tessel first, then the peers from the fastest on, then what is there to compare with.
bool StandsBefore(const Figure& first, const Figure& second) {
  const auto rank = [](Kind kind) { return kind == Kind::kAside ? Kind::kFloor : kind; };
  const Kind firstRank = rank(first.label.kind);
  const Kind secondRank = rank(second.label.kind);
  if (firstRank != secondRank) return firstRank < secondRank;
  return firstRank == Kind::kPeer && first.value < second.value;
}

// The least figure of a kind; 0 when there is none.
double LeastOf(std::span<const Figure> group, Kind kind) {
  double least = 0;
  for (const Figure& figure : group) {
    if (figure.label.kind == kind && (least == 0 || figure.value < least)) least = figure.value;
  }
  return least;
}

// How many times `unit` the value is, or nothing when there is no such unit.
std::string Ratio(double value, double unit) { return unit == 0 ? "" : Rounded(value / unit); }

Line LineOf(const Figure& figure, double floor, double peer) {
  const std::string& name = figure.label.name;
  const bool isTessel = figure.label.kind == Kind::kTessel;
  const bool isSameOperation = isTessel || figure.label.kind == Kind::kPeer;
  return {"", isTessel ? "**" + name + "**" : name, Rounded(figure.value), Ratio(figure.value, floor),
          isSameOperation ? Ratio(figure.value, peer) : ""};
}

// Adds the lines of one operation, whose name stands in the first.
void AddGroup(std::span<const Figure> group, std::vector<Line>& lines) {
  const double floor = LeastOf(group, Kind::kFloor);
  const double peer = LeastOf(group, Kind::kPeer);
  std::vector<Figure> sorted(group.begin(), group.end());
  std::stable_sort(sorted.begin(), sorted.end(), StandsBefore);
  const size_t first = lines.size();
  for (const Figure& figure : sorted) lines.push_back(LineOf(figure, floor, peer));
  lines[first][0] = group.front().operation;
}

std::vector<Line> LinesOf(const Heading& heading, std::span<const Figure> figures) {
  std::vector<Line> lines = {{"operation", "side", heading.unit, "÷ floor", "÷ best peer"}};
  while (!figures.empty()) {
    const auto end = std::find_if(figures.begin(), figures.end(), [&figures](const Figure& figure) {
      return figure.operation != figures.front().operation;
    });
    const auto size = static_cast<size_t>(end - figures.begin());
    AddGroup(figures.first(size), lines);
    figures = figures.subspan(size);
  }
  return lines;
}

void PrintLine(const Line& line, const std::array<size_t, kColumns>& widths) {
  for (size_t column = 0; column < kColumns; ++column) {
    std::printf("| %s ", Padded(line[column], widths[column], column).c_str());
  }
  std::puts("|");
}

// Says to Markdown which columns are aligned to the right.
void PrintRule(const std::array<size_t, kColumns>& widths) {
  for (size_t column = 0; column < kColumns; ++column) {
    std::printf("|%s%s", std::string(widths[column] + 1, '-').c_str(), column < kTextColumns ? "-" : ":");
  }
  std::puts("|");
}

void PrintLines(const std::vector<Line>& lines) {
  std::array<size_t, kColumns> widths{};
  for (const Line& line : lines) {
    for (size_t column = 0; column < kColumns; ++column) {
      widths[column] = std::max(widths[column], WidthOf(line[column]));
    }
  }
  PrintLine(lines.front(), widths);
  PrintRule(widths);
  for (size_t i = 1; i < lines.size(); ++i) PrintLine(lines[i], widths);
}

// Each remark once in a program: below the first table that has its side.
void PrintRemarks(const std::vector<Figure>& figures) {
  static std::set<std::string> printed;
  for (const Figure& figure : figures) {
    const std::string remark = "- " + figure.label.name + ": " + figure.label.remark;
    if (printed.insert(remark).second) std::puts(remark.c_str());
  }
}

}  // namespace

std::string Grouped(uint64_t number) {
  std::string text = std::to_string(number);
  for (size_t left = text.size(); left > 3; left -= 3) text.insert(left - 3, 1, ',');
  return text;
}

void Print(const Heading& heading, const std::vector<Figure>& figures) {
  if (figures.empty()) return;  // The caller asked for other rows.
  std::printf("### %s\n\n%s\n\n", heading.title.c_str(), heading.text.c_str());
  PrintLines(LinesOf(heading, figures));
  std::puts("");
  PrintRemarks(figures);
  std::puts("");
  std::fflush(stdout);
}

}  // namespace bench
