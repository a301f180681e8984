#include "x509/algorithms.h"

constinit const Asn1Item SubjectPublicKeyInfoItem = tessel::kSubjectPublicKeyInfo;
