// The JSON is written as it is made: a document in memory would take many times what the object takes that it tells of.
#include "facts/json.h"

#include <algorithm>
#include <string>
#include <utility>

#include "asn1/ber.h"
#include "command/report.h"
#include "tessel/strings.hpp"
#include "texts/concat.h"

namespace tool {
namespace {

constexpr size_t kStep = 2;
constexpr size_t kSpare = 1 << 20;

bool IsPlain(char c) { return c >= 0x20 && c <= 0x7E && c != '"' && c != '\\'; }

// In UTF-16, as JSON escapes.
void AppendEscaped(std::string& out, char32_t c) {
  if (c > 0xFFFF) {
    AppendEscaped(out, 0xD7C0 + (c >> 10));
    c = 0xDC00 | (c & 0x3FF);
  }
  const uint8_t octets[] = {static_cast<uint8_t>(c >> 8), static_cast<uint8_t>(c)};
  out += Concat("\\u", tessel::Hex(octets));
}

void AppendCharacter(std::string& out, char32_t c) {
  if (c == '"' || c == '\\') out += '\\';
  if (tessel::IsDangerous(c)) {
    AppendEscaped(out, c);
  } else {
    tessel::AppendUtf8(out, tessel::IsCharacter(c) ? c : U'\uFFFD');
  }
}

void PrintEscaped(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const auto plain = std::find_if_not(text.begin(), text.end(), IsPlain);
    out.append(text.begin(), plain);
    text.remove_prefix(static_cast<size_t>(plain - text.begin()));
    if (text.empty()) break;
    Octets rest(reinterpret_cast<const uint8_t*>(text.data()), text.size());
    AppendCharacter(out, tessel::TakeCharacter(TESSEL_KIND_UTF8_STRING, rest));
    text.remove_prefix(text.size() - rest.size());
  }
  Print(out);
}

void PrintScalar(std::nullptr_t) { Print("null"); }
void PrintScalar(bool value) { Print(value ? "true" : "false"); }
void PrintScalar(int64_t value) { Print(std::to_string(value)); }
void PrintScalar(const LentText& write) {
  Print("\"");
  write(PrintEscaped);
  Print("\"");
}
void PrintScalar(const std::string& value) {
  PrintScalar([&value](const TextSink& write) { write(value); });
}

void PrintValue(const Fact& fact, size_t indent);

void PrintParts(const Fact& fact, size_t indent) {
  const std::string line = Concat('\n', std::string(indent + kStep, ' '));
  bool isFirst = true;
  fact.VisitParts([&](const Fact& part) {
    if (!std::exchange(isFirst, false)) Print(",");
    Print(line);
    if (fact.shape == Fact::Shape::kObject) {
      PrintScalar(std::string(part.key));
      Print(": ");
    }
    PrintValue(part, indent + kStep);
    return true;
  });
  if (!isFirst) Print(line.substr(0, line.size() - kStep));
}

void PrintValue(const Fact& fact, size_t indent) {
  if (fact.shape == Fact::Shape::kScalar) {
    std::visit([](const auto& value) { PrintScalar(value); }, fact.value);
    return;
  }
  const bool isObject = fact.shape == Fact::Shape::kObject;
  Print(isObject ? "{" : "[");
  PrintParts(fact, indent);
  Print(isObject ? "}" : "]");
}

// Makes what is made for the moment.
bool MakeParts(const Fact& fact) { return fact.VisitParts(MakeParts); }

}  // namespace

void PrintJsonListItem(const Fact& fact) {
  // What fails for lack of memory fails before anything is printed: half an object would be no JSON. Then there is more
  // memory than this took.
  std::string spare;
  spare.reserve(kSpare);
  MakeParts(fact);
  std::string().swap(spare);
  StartJsonListItem();
  PrintValue(fact, 0);
}

}  // namespace tool
