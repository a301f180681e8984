// The parts that several kinds of objects share, as text for people. All take null for an absent part.
#pragma once

#include <string>

namespace tool {

// A distinguished name in the order in which it is stored, `C=BE, O=GlobalSign nv-sa`, escaped by RFC 4514.
std::string NameText(const void* nameChoice);

// A Time.
std::string ValidityTimeText(const void* timeChoice);

// The name of an AlgorithmIdentifier's algorithm.
std::string AlgorithmText(const void* algorithmIdentifier);

// A SubjectPublicKeyInfo: its algorithm, and its size or its parameter set.
std::string PublicKeyText(const void* subjectPublicKeyInfo);

// Prints X509Extensions, a line each; nothing when there are none.
void PrintExtensions(const void* extensions);

}  // namespace tool
