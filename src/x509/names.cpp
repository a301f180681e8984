#include "x509/names.h"

constinit const Asn1Item X509NameItem = tessel::kX509Name;
