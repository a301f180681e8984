#include "engine/primitives.h"

#include "engine/nodes.h"
#include "engine/status.h"
#include "tessel/descriptor.h"

using namespace tessel;

uint32_t TESSEL_CALL CheckAsn1Boolean(const Asn1Value* value) {
  if (value == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (value->tag != TESSEL_KIND_BOOLEAN || !IsBooleanContent(ContentOf(*value))) return Fail(TESSEL_INVALID_CONTENT);
  return Status();
}

uint32_t TESSEL_CALL CheckAsn1Integer(const Asn1Value* value) {
  if (value == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (value->tag != TESSEL_KIND_INTEGER || !IsIntegerContent(ContentOf(*value))) return Fail(TESSEL_INVALID_CONTENT);
  return Status();
}
