// The JSON is written as it is made: a document in memory would take many times what the object takes that it tells of.
#include <algorithm>
#include <string>
#include <utility>

#include "facts/fact.h"
#include "tessel/strings.hpp"
#include "texts/concat.h"

namespace tool {
namespace {

using tessel::Octets;

constexpr size_t kStep = 2;
constexpr size_t kSpare = 1 << 20;  // what writing may take beside what is made

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

void WriteEscaped(std::string_view text, const TextSink& write) {
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
  write(out);
}

void WriteScalar(std::nullptr_t, const TextSink& write) { write("null"); }
void WriteScalar(bool value, const TextSink& write) { write(value ? "true" : "false"); }
void WriteScalar(int64_t value, const TextSink& write) { write(std::to_string(value)); }
void WriteScalar(const LentText& text, const TextSink& write) {
  write("\"");
  text([&write](std::string_view piece) { WriteEscaped(piece, write); });
  write("\"");
}
void WriteScalar(const std::string& value, const TextSink& write) {
  WriteScalar([&value](const TextSink& piece) { piece(value); }, write);
}

void WriteParts(const Fact& fact, const TextSink& write, size_t indent) {
  const std::string line = Concat('\n', std::string(indent + kStep, ' '));
  bool isFirst = true;
  fact.VisitParts([&](const Fact& part) {
    if (!std::exchange(isFirst, false)) write(",");
    write(line);
    if (fact.shape == Fact::Shape::kObject) {
      WriteScalar(std::string(part.key), write);
      write(": ");
    }
    WriteJson(part, write, indent + kStep);
    return true;
  });
  if (!isFirst) write(line.substr(0, line.size() - kStep));
}

bool MakeParts(const Fact& fact) { return fact.VisitParts(MakeParts); }

}  // namespace

void MakeForJson(const Fact& fact) {
  std::string spare;
  spare.reserve(kSpare);
  MakeParts(fact);
}

void WriteJson(const Fact& fact, const TextSink& write, size_t indent) {
  if (fact.shape == Fact::Shape::kScalar) {
    std::visit([&write](const auto& value) { WriteScalar(value, write); }, fact.value);
    return;
  }
  const bool isObject = fact.shape == Fact::Shape::kObject;
  write(isObject ? "{" : "[");
  WriteParts(fact, write, indent);
  write(isObject ? "}" : "]");
}

}  // namespace tool
