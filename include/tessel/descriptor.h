/* Item descriptors: what the engine knows of an ASN.1 type. */
#ifndef TESSEL_DESCRIPTOR_H
#define TESSEL_DESCRIPTOR_H

#include <stdint.h>

#include "tessel/platform.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Asn1Item.flags. The low octet is the tag class, written as the class bits of an identifier octet. */
enum Asn1ItemFlag {
  TESSEL_CLASS_UNIVERSAL = 0x00,
  TESSEL_CLASS_APPLICATION = 0x40,
  TESSEL_CLASS_CONTEXT = 0x80,
  TESSEL_CLASS_PRIVATE = 0xC0,
  /* The class bits of flags. */
  TESSEL_CLASS_MASK = 0xC0,
  /* The item is encoded constructed. */
  TESSEL_FLAG_CONSTRUCTED = 0x2000,
  /* The tag wraps the item's own encoding instead of replacing its tag. */
  TESSEL_FLAG_EXPLICIT = 0x10000,
  TESSEL_FLAG_OPTIONAL = 0x20000
};

/* Asn1Item.kind. The low seven bits are the universal tag number, for those kinds that have one. */
enum Asn1Kind {
  TESSEL_KIND_BOOLEAN = 1,
  TESSEL_KIND_INTEGER = 2,
  TESSEL_KIND_BIT_STRING = 3,
  TESSEL_KIND_OCTET_STRING = 4,
  TESSEL_KIND_NULL = 5,
  TESSEL_KIND_OBJECT_IDENTIFIER = 6,
  TESSEL_KIND_ENUMERATED = 10,
  TESSEL_KIND_UTF8_STRING = 12,
  TESSEL_KIND_SEQUENCE = 16,
  TESSEL_KIND_SET = 17,
  TESSEL_KIND_NUMERIC_STRING = 18,
  TESSEL_KIND_PRINTABLE_STRING = 19,
  TESSEL_KIND_TELETEX_STRING = 20,
  TESSEL_KIND_VIDEOTEX_STRING = 21,
  TESSEL_KIND_IA5_STRING = 22,
  TESSEL_KIND_UTC_TIME = 23,
  TESSEL_KIND_GENERALIZED_TIME = 24,
  TESSEL_KIND_GRAPHIC_STRING = 25,
  TESSEL_KIND_VISIBLE_STRING = 26,
  TESSEL_KIND_GENERAL_STRING = 27,
  TESSEL_KIND_UNIVERSAL_STRING = 28,
  TESSEL_KIND_BMP_STRING = 30,
  TESSEL_KIND_CHOICE = 128,
  /* An open type: any element, kept as its whole encoding. */
  TESSEL_KIND_ANY = 129,
  TESSEL_KIND_SEQUENCE_OF = 144,
  TESSEL_KIND_SET_OF = 145
};

/* One ASN.1 type. Descriptors are constant, are shared freely, and must outlive every call that they are handed to.
 * One that a caller writes must keep what is said here. A node size or a count that does not fit the members, and a
 * null member, are TESSEL_INCONSISTENT_DESCRIPTOR to every function that comes to them; the rest is trusted. A
 * descriptor may contain itself, by a list or where it is OPTIONAL: values are read to a depth of 64 then, so that a
 * stack of 128 KB is enough for all functions. On 32-bit builds a descriptor is seven 32-bit fields.
 *
 * What the kinds can do: everything decodes and encodes except that a SET (as opposed to a SET OF) does not encode; a
 * NULL cannot be copied; NULL, ENUMERATED, CHOICE and ANY cannot be compared. A DEFAULT is OPTIONAL with a default
 * value. */
typedef struct Asn1Item Asn1Item;
struct Asn1Item {
  /* A tag class and values of Asn1ItemFlag, or'ed. */
  uint32_t flags;
  /* One of Asn1Kind. */
  uint32_t kind;
  /* The tag number that goes with the class; -1 when the item has its universal tag only. An open value that is an
   * alternative of a CHOICE is found by its class, constructed bit and tag number; one that has no tag number is taken
   * for a BOOLEAN. */
  int32_t tagNumber;
  /* SEQUENCE and SET: the size of the node in octets, one pointer for each member. */
  uint32_t nodeSize;
  /* SEQUENCE and SET: the members in order. CHOICE: the alternatives in order. SEQUENCE OF and SET OF: the element.
   * Null for the other kinds. */
  const Asn1Item* const* members;
  /* How many; 1 for SEQUENCE OF and SET OF. */
  uint32_t memberCount;
  /* The DEFAULT of an OPTIONAL item, a constant node of the item's own shape, or null. */
  const void* defaultValue;
};

#ifdef __cplusplus
}
#endif

#endif
