/* Builds names in UTF-8, encodes and compares them. */
#include <string.h>

#include "example.h"

/* Numbers of attribute types, from the table in oid.h. */
enum { kCommonName = 1, kOrganization = 2, kUnit = 3, kCountry = 4, kSerialNumber = 24 };

static uint32_t AddAttribute(X509Name* name, uint32_t attribute, const char* utf8, uint32_t newRdn) {
  const uint8_t* value = (const uint8_t*)utf8;
  const uint32_t size = (uint32_t)strlen(utf8);
  uint8_t type[256];
  uint32_t status = TESSEL_OK, typeLength = sizeof type, stringType = 0;
  TRY(GetNameAttributeTypeOid(attribute, type, &typeLength));
  TRY(DetermineSuitableStringType(value, size, &stringType));
  /* For digits, say, a NumericString would do, but X.520 gives these attributes a choice of two types. */
  if (stringType != TESSEL_KIND_PRINTABLE_STRING) stringType = TESSEL_KIND_UTF8_STRING;
  TRY(AddX509NameEntry(name, value, size, stringType, type, newRdn));
done:
  return status;
}

static uint32_t BuildName(X509Name** name, uint32_t attribute, const char* company) {
  uint32_t status = TESSEL_OK;
  TRY(CreateX509Name(name));
  TRY(AddAttribute(*name, kCountry, "RU", 1));
  TRY(AddAttribute(*name, attribute, company, 1));
  TRY(AddAttribute(*name, kCommonName, "Иван Петров", 1));
  TRY(AddAttribute(*name, kSerialNumber, "B-17", 0)); /* joins the commonName in its RDN */
done:
  return status;
}

int main(void) {
  X509Name *name = NULL, *otherType = NULL, *otherCase = NULL, *read = NULL;
  Octets encoded = {NULL, 0}, otherEncoded = {NULL, 0};
  uint32_t status = TESSEL_OK;
  TRY(BuildName(&name, kOrganization, "АО «Пример»"));
  TRY(BuildName(&otherType, kUnit, "АО «Пример»"));
  TRY(BuildName(&otherCase, kOrganization, "АО «ПРИМЕР»"));
  FETCH(encoded, EncodeX509Name(name, encoded.data, &encoded.length));
  FETCH(otherEncoded, EncodeX509Name(otherType, otherEncoded.data, &otherEncoded.length));
  TRY(DecodeX509Name(encoded.data, encoded.length, &read));

  printf("another type, the same values: %u\n", CompareX509Names(name, otherType));
  printf("the encodings of these two: %u\n",
         IsArrayEquals(encoded.data, encoded.length, otherEncoded.data, otherEncoded.length));
  printf("another case: %u\n", CompareX509Names(name, otherCase));
  printf("a name and itself, encoded and read: %u\n", CompareX509Names(name, read));
done:
  free(otherEncoded.data);
  free(encoded.data);
  FreeX509Name(read);
  FreeX509Name(otherCase);
  FreeX509Name(otherType);
  FreeX509Name(name);
  return ExitCode(status);
}
