#include "status_text.h"

#include <string_view>

#include "concat.h"
#include "tessel/tessel.h"

namespace tool {
namespace {

struct Sentence {
  uint32_t status;
  std::string_view text;
};

constexpr Sentence kSentences[] = {
    {TESSEL_OUT_OF_MEMORY, "there is not enough memory"},
    {TESSEL_INVALID_ARGUMENT, "an element is constructed whose type must be primitive"},
    {TESSEL_BUFFER_TOO_SMALL, "a buffer is too small"},
    {TESSEL_UNSUPPORTED_KIND, "the type of an element is not supported"},
    {TESSEL_MALFORMED, "an element is malformed or missing"},
    {TESSEL_LENGTH_TOO_LARGE, "a length or an arc of an object identifier is too large"},
    {TESSEL_INCONSISTENT_DESCRIPTOR, "the library's description of the type contradicts itself"},
    {TESSEL_WRONG_ALTERNATIVE, "a choice holds another alternative"},
    {TESSEL_INVALID_CONTENT, "a BOOLEAN or INTEGER has a content that its type does not allow"},
    {TESSEL_UNKNOWN_OID, "an object identifier is not known"},
    {TESSEL_UNKNOWN_ID, "a numeric identifier is not known"},
    {TESSEL_ABSENT, "an element is absent"},
    {TESSEL_INVALID_TIME, "a time has a field out of its range"},
    {TESSEL_INVALID_KEY, "a key has a length or form that its algorithm does not allow"},
    {TESSEL_INVALID_PEM, "the marker lines of the PEM text are missing or out of order"},
    {TESSEL_DIFFERENT, "two values that should be equal differ"},
    {TESSEL_NOT_FOUND, "an item was not found"},
    {TESSEL_NO_IDENTIFIER_TEXT, "a signer identifier has no content"},
    {TESSEL_INDEFINITE_LENGTH, "an element of indefinite length is primitive or does not end as it must"},
    {TESSEL_WRONG_SEGMENT, "a segment of an OCTET STRING is no OCTET STRING"},
    {TESSEL_INTERNAL_BUFFER_TOO_SMALL, "an embedded value is too large"},
    {TESSEL_ALREADY_PRESENT, "an item is there twice"},
};

}  // namespace

std::string StatusText(uint32_t status) {
  for (const Sentence& sentence : kSentences) {
    if (sentence.status == status) return std::string(sentence.text);
  }
  return Concat("the library failed with status ", status);
}

}  // namespace tool
