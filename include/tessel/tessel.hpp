// The C interface of tessel for C++20. There is no wrapper for each function: a few templates call any of them, with
// arguments, results and failures as C++ has them, and the headers of the C interface remain the reference.
//
//   calls.hpp              owners of objects, calls, octets and texts that are fetched
//   error.hpp              statuses in words, and the exception
//   octets.hpp             octets, and hexadecimal digits
//   object_identifier.hpp  object identifiers
//   known_identifiers.hpp  their names
//   strings.hpp            character strings and names as UTF-8
//   pem.hpp                PEM texts and Base64
//   asn1.hpp               types described as structs, those of callers too
//   nodes.hpp              values of such types put together
//   tree.hpp               and decoded and encoded
//   certificate.hpp ...    the library's types, each beside the header of its family
//
// They need nothing but the standard library, and add nothing to what the library exports. All of it compiles without
// exceptions and without RTTI; what throws is not there then.
#pragma once

#include "tessel/algorithms.hpp"
#include "tessel/asn1.hpp"
#include "tessel/calls.hpp"
#include "tessel/certificate.hpp"
#include "tessel/crl.hpp"
#include "tessel/error.hpp"
#include "tessel/extension_lists.hpp"
#include "tessel/extension_values.hpp"
#include "tessel/extensions.hpp"
#include "tessel/known_identifiers.hpp"
#include "tessel/lists.hpp"
#include "tessel/names.hpp"
#include "tessel/nodes.hpp"
#include "tessel/object_identifier.hpp"
#include "tessel/octets.hpp"
#include "tessel/pem.hpp"
#include "tessel/strings.hpp"
#include "tessel/tessel.h"
#include "tessel/time.hpp"
#include "tessel/tree.hpp"
