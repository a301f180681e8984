// What is told about an object: one description, from which the text for people and the JSON for programs are made.
//
//   Fact constraints = Fact::Object();
//   constraints.Add("ca", "CA", Fact::Flag(true));
//   constraints.Hide("source", "2.5.29.19");  // for programs only
//
// is the line `CA: yes` (text.cpp), and {"ca": true, "source": "2.5.29.19"} (json.cpp). The order of the parts is that
// of both outputs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tool {

// Takes a text piece by piece, each of whole characters in UTF-8.
using TextSink = std::function<void(std::string_view piece)>;

// Writes a text that is made when it is printed, from octets that the described object lends: hexadecimal of a long
// content, say, takes no memory.
using LentText = std::function<void(const TextSink& write)>;

// A value for programs. Texts are UTF-8.
using Scalar = std::variant<std::nullptr_t, bool, int64_t, std::string, LentText>;

struct Fact;

// Is handed the parts of a fact one after the other, until it wants no more and returns false.
using FactSink = std::function<bool(const Fact& part)>;

// Hands out facts that are made for the moment, of which there may be many. False when the sink wanted no more.
using LentFacts = std::function<bool(const FactSink& sink)>;

struct Fact {
  enum class Shape { kScalar, kObject, kList };

  // For people: a text is one line, safe to print. A fact with neither label nor text shows its parts in its place.
  std::string label;
  std::string text;
  bool hidden = false;  // with all its parts: for programs only

  // For programs: `value` of a scalar, else the parts; a part's key is its name in an object.
  Shape shape = Shape::kScalar;
  std::string_view key;
  Scalar value;
  std::vector<Fact> parts;
  LentFacts lentParts;  // behind the others

  // What lends octets to the fact and its parts, when nothing else keeps it.
  std::shared_ptr<const void> lender;

  static Fact Of(std::string text, Scalar value);
  static Fact Flag(bool flag);
  static Fact Object(std::string text = {});
  static Fact List(LentFacts elements);

  // Adds a part to an object; without a label only its text is shown. Keys are constant texts.
  void Add(std::string_view partKey, std::string_view partLabel, Fact part);

  // Leaves the parts to programs.
  void HideParts();

  // Takes the parts of another object for its own, but not those that are lent.
  void TakeParts(Fact other);

  // Hands out all parts. False when the sink wanted no more, which most do not care for.
  // NOLINTNEXTLINE(modernize-use-nodiscard)
  bool VisitParts(const FactSink& sink) const;
  [[nodiscard]] bool HasParts() const;

  // Says so to people when there is neither a text nor a part.
  void TellIfEmpty();

  // Adds what is for programs only.
  void Hide(std::string_view partKey, Fact part);
  void Hide(std::string_view partKey, Scalar partValue);

  // Keeps what lends to the fact as long as the fact.
  template <typename Lender>
  void Keep(Lender kept) {
    lender = std::make_shared<Lender>(std::move(kept));
  }
};

// Writes the parts of a fact as lines, each after so many blanks. Texts of labelled neighbours stand in one column;
// what is told about a part stands below it, further in.
void WriteLines(const Fact& fact, size_t indent, const TextSink& write);

// Makes what is made for the moment while a fact is written, so that lack of memory shows before anything is written:
// half an object would be no JSON. Writing takes no more memory than this.
void MakeForJson(const Fact& fact);

// Writes the value of a fact in UTF-8. Characters that could drive a terminal or disguise a text are escaped.
void WriteJson(const Fact& fact, const TextSink& write, size_t indent = 0);

}  // namespace tool
