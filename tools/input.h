// The files that the user names, and the encodings in them.
#pragma once

#include <optional>
#include <string>

#include "ber.h"

namespace tool {

// One encoding: a whole file, or one block of a PEM file.
struct Input {
  std::string where;                 // for people: the file, and which block of it
  std::optional<std::string> label;  // of a PEM block
  Octets octets;                     // never empty, and shorter than 2^32
};

// Shows one input. False when it had to report an error.
using InputHandler = bool (*)(const Input& input);

// Hands all encodings of a file to `handle`; the name `-` is standard input. Reports what cannot be read. False when
// there was any error.
bool HandleFile(const char* name, InputHandler handle);

}  // namespace tool
