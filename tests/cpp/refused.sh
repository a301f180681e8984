#!/usr/bin/env bash
# Calls and descriptors in C++ that must not compile, each with what the compiler is to say of it.
set -euo pipefail
compiler=$1 include=$2

compile() {
  printf '%s\n' '#include <tessel/tessel.hpp>' 'using namespace tessel;' 'std::string Read();' \
    "void Use(Certificate* certificate, X509Name* name, X509ExtensionsSlot* slot) { $1 }" |
    "$compiler" -std=c++20 -I"$include" -fsyntax-only -x c++ - 2>&1
}

refused() {
  local said
  if said=$(compile "$2"); then
    echo "compiles, and must not: $2" >&2
    return 1
  fi
  grep -qF "$1" <<<"$said" || { printf '%s\nrefused in other words: %s\n' "$said" "$2" >&2; return 1; }
}

compile 'Call(CreateX509Name, &name); static_cast<void>(slot); static_cast<void>(certificate);'
refused 'move its owner' 'auto owner = Make(CreateCertificate);
  Call(AddCertificateToCertificates, Make(CreateCertificates).Get(), owner);'
refused 'would end with the call' 'Call(SetCertificateVersion, Make(CreateCertificate), 2);'
refused 'what would be lent ends' 'Get(GetCertificatesCertificate, Make(CreateCertificates), 0);'
refused 'call Make' 'Get(CreateX509Name);'
refused 'call Get' 'Make(GetCertificateSubject, certificate);'
refused 'the function has more parameters' 'Bytes oid, value; Call(AddX509ExtensionsExtension, slot, oid, value);'
refused 'does not fit' 'Bytes oid, value; Call(AddX509ExtensionsExtension, slot, oid, 0, value);'
refused 'does not fit' 'Call(SetCertificateVersion, certificate, 2.9);'
refused 'NoDottedText' 'ObjectIdentifier identifier("1.2.03");'
refused 'deleted' 'PemReader reader(Read());'

pair='struct Pair { Asn1Value* first; Asn1Value* second; };'
compile "$pair constexpr Sequence kPair{Member<&Pair::first, kInteger>, Member<&Pair::second, kInteger>};
  static_cast<void>(slot); static_cast<void>(name); static_cast<void>(certificate); static_cast<void>(kPair);"
refused 'one row for each member' "$pair constexpr Sequence kPair{Member<&Pair::first, kInteger>};"
refused 'in the order of the members' \
  "$pair constexpr Sequence kPair{Member<&Pair::second, kInteger>, Member<&Pair::first, kInteger>};"
refused 'in the order of their numbers' 'Choice<Time, Alternative<Time::generalTime, kGeneralizedTime>>();'
refused 'kind != TESSEL_KIND_CHOICE' 'static_cast<void>(Implicit<0, kTime>);'
refused 'tagNumber == kNoTagNumber' 'static_cast<void>(Explicit<0, Implicit<1, kInteger>>);'
