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

using Row = Rows::value_type;

std::string Formatted(const char* format, double value) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

// Characters, not octets, as a fixed-width font shows them.
size_t WidthOf(const std::string& text) {
  return static_cast<size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string Padded(const std::string& text, size_t width, bool isText) {
  const std::string gap(width - WidthOf(text), ' ');
  return isText ? text + gap : gap + text;
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

Row RowOf(const Figure& figure, double floor, double peer) {
  const std::string& name = figure.label.name;
  const bool isTessel = figure.label.kind == Kind::kTessel;
  const bool isSameOperation = isTessel || figure.label.kind == Kind::kPeer;
  return {"", isTessel ? "**" + name + "**" : name, Rounded(figure.value), Ratio(figure.value, floor),
          isSameOperation ? Ratio(figure.value, peer) : ""};
}

// Adds the rows of one operation, whose name stands in the first.
void AddGroup(std::span<const Figure> group, Rows& rows) {
  const double floor = LeastOf(group, Kind::kFloor);
  const double peer = LeastOf(group, Kind::kPeer);
  std::vector<Figure> sorted(group.begin(), group.end());
  std::stable_sort(sorted.begin(), sorted.end(), StandsBefore);
  const size_t first = rows.size();
  for (const Figure& figure : sorted) rows.push_back(RowOf(figure, floor, peer));
  rows[first][0] = group.front().operation;
}

Rows RowsOf(const Heading& heading, std::span<const Figure> figures) {
  Rows rows = {{"operation", "side", heading.unit, "÷ floor", "÷ best peer"}};
  while (!figures.empty()) {
    const auto end = std::find_if(figures.begin(), figures.end(), [&figures](const Figure& figure) {
      return figure.operation != figures.front().operation;
    });
    const auto size = static_cast<size_t>(end - figures.begin());
    AddGroup(figures.first(size), rows);
    figures = figures.subspan(size);
  }
  return rows;
}

void PrintRow(const Row& row, std::span<const size_t> widths, size_t textColumns) {
  for (size_t column = 0; column < widths.size(); ++column) {
    const std::string text = column < row.size() ? row[column] : "";
    std::printf("| %s ", Padded(text, widths[column], column < textColumns).c_str());
  }
  std::puts("|");
}

// Says to Markdown which columns are aligned to the right.
void PrintRule(std::span<const size_t> widths, size_t textColumns) {
  for (size_t column = 0; column < widths.size(); ++column) {
    std::printf("|%s%s", std::string(widths[column] + 1, '-').c_str(), column < textColumns ? "-" : ":");
  }
  std::puts("|");
}

void PrintRows(const Rows& rows, size_t textColumns) {
  std::vector<size_t> widths(rows.front().size());
  for (const Row& row : rows) {
    for (size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], WidthOf(row[column]));
    }
  }
  PrintRow(rows.front(), widths, textColumns);
  PrintRule(widths, textColumns);
  for (size_t i = 1; i < rows.size(); ++i) PrintRow(rows[i], widths, textColumns);
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

std::string Rounded(double value) {
  if (value < 9.995) return Formatted("%.2f", value);
  if (value < 99.95) return Formatted("%.1f", value);
  return Grouped(static_cast<uint64_t>(std::llround(value)));
}

std::string Grouped(uint64_t number) {
  std::string text = std::to_string(number);
  for (size_t left = text.size(); left > 3; left -= 3) text.insert(left - 3, 1, ',');
  return text;
}

void PrintTable(const std::string& title, const std::string& text, const Rows& rows, size_t textColumns) {
  std::printf("### %s\n\n%s\n\n", title.c_str(), text.c_str());
  PrintRows(rows, textColumns);
  std::puts("");
  std::fflush(stdout);
}

void Print(const Heading& heading, const std::vector<Figure>& figures) {
  constexpr size_t kTextColumns = 2;
  if (figures.empty()) return;  // The caller asked for other rows.
  PrintTable(heading.title, heading.text, RowsOf(heading, figures), kTextColumns);
  PrintRemarks(figures);
  std::puts("");
  std::fflush(stdout);
}

}  // namespace bench
