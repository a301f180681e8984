// Facts about types of the library that are told in other words than the names of their members. They lend what the
// nodes hold.
#pragma once

#include "facts/fact.h"
#include "tessel/certificate.hpp"
#include "tessel/extension_lists.hpp"
#include "tessel/octets.hpp"

namespace tool {

// A distinguished name in the order in which it is stored, `C=BE, O=GlobalSign nv-sa`, escaped by RFC 4514.
Fact FactOf(const X509Name& name);
Fact FactOf(const tessel::NameChoice& name);
// A name of that one alone.
Fact FactOf(const tessel::RelativeDistinguishedName& name);

// A general name, labelled with its kind.
Fact FactOf(const X509GeneralName& name);
// The base of a subtree (RFC 5280, 4.2.1.10): a general name whose addresses have a mask.
Fact SubtreeBaseFact(const X509GeneralName& name);

Fact FactOf(const tessel::Time& time);

// An AlgorithmIdentifier by the name of its algorithm; programs get its parameters too.
Fact FactOf(const AlgorithmIdentifier& identifier);
// A public key by its algorithm, its size or its parameter sets.
Fact FactOf(const SubjectPublicKeyInfo& info);

// An extension with its value, where that is of a known type.
Fact FactOf(const X509Extension& extension);
// Values of extensions, and what these are made of.
Fact FactOf(const tessel::AccessDescription& access);
Fact FactOf(const tessel::PolicyInformation& policy);
Fact FactOf(const tessel::PolicyQualifierInfo& qualifier);
Fact FactOf(const ExtensionCrlDistributionPoints& points);

// With the octets that it was read from, for the fingerprints.
Fact FactOf(const Certificate& certificate, tessel::Octets octets);

}  // namespace tool
