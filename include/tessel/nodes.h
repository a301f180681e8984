/* Nodes: what a decoded or built value is made of.
 *
 * A value is a tree of plain structs whose shape follows its descriptor:
 *
 *   primitive kinds                    Asn1Value
 *   BIT STRING                         Asn1BitString
 *   OBJECT IDENTIFIER                  Asn1Oid
 *   ANY                                Asn1Any
 *   CHOICE                             Asn1Choice
 *   SEQUENCE OF, SET OF                Asn1List
 *   SEQUENCE, SET                      one pointer a member, in the order of the descriptor; null: absent
 *
 * A node of a named type is handled by its name (Certificate*, X509Name*), which is an opaque struct in C; its shape is
 * still the one above. A node does not know its descriptor: every operation is handed both.
 *
 * All nodes come from the library. A tree is released at its root, and a node lives no longer than that. It may end
 * before: a pointer to a node, or to the octets that it holds, is good until a function replaces or removes that node
 * or one that holds it. Callers read nodes as they like, and change them through functions: the library would not
 * notice another change. */
#ifndef TESSEL_NODES_H
#define TESSEL_NODES_H

#include <stdint.h>

#include "tessel/platform.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct Asn1Value {
  /* The universal tag number of the content; for an Asn1Any the tag number of the element that it holds, or the first
   * octet of that element when a function made the node from the caller's octets. */
  uint32_t tag;
  /* The length of `data` in octets. */
  uint32_t length;
  /* The content octets as they are encoded (an INTEGER is big-endian), or null when there are none. An Asn1Any holds
   * the whole encoding: identifier, length and content, end-of-contents octets included. */
  uint8_t* data;
} Asn1Value;

#ifdef __cplusplus
struct Asn1Oid : Asn1Value {};
struct Asn1Any : Asn1Value {};
#else
typedef Asn1Value Asn1Oid;
typedef Asn1Value Asn1Any;
#endif

typedef struct Asn1BitString {
  /* How many bits of the last octet are not used, 0 to 7. */
  uint32_t unused;
  /* The length of `data` in octets. */
  uint32_t length;
  uint8_t* data;
} Asn1BitString;

typedef struct Asn1Choice {
  /* The position of the alternative among the descriptor's members. */
  uint32_t index;
  /* The alternative's node, or null. */
  void* value;
} Asn1Choice;

typedef struct Asn1List {
  uint32_t count;
  /* `count` nodes. What follows them, up to `capacity`, is not specified. */
  void** items;
  /* A list that was decoded or copied begins with no more than it needs. Appending makes an array of 10, then of
   * capacity + 200 + capacity / 2. */
  uint32_t capacity;
  /* The order in which sorting the list puts two items, or null. */
  int (*compare)(const void* first, const void* second);
  /* Non-zero (the default): a SET OF is written in the order of its elements' encodings; 0: in the list's order. */
  uint32_t sorted;
} Asn1List;

#ifdef __cplusplus
}
#endif

#endif
