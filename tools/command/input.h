// The files that the user names, and the encodings in them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "asn1/ber.h"

namespace tool {

// One encoding: a whole file, or one block of a PEM file.
struct Input {
  std::string where;                 // for people: the file, and which block of it
  std::string file;                  // for programs
  std::optional<std::string> label;  // of a PEM block
  size_t index = 1;                  // of a PEM block among those of its label in the file
  std::optional<size_t> line;        // of a PEM block: that of its BEGIN line, from 1
  Octets octets;                     // never empty, and shorter than 2^32
};

// Shows one input. What it throws is reported.
using InputHandler = void (*)(const Input& input);

// Hands all encodings of a file to `handle`; the name `-` is standard input. Reports what cannot be read. False when
// there was any error.
bool HandleFile(const char* name, InputHandler handle);

}  // namespace tool
