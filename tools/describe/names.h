// Facts about names, by their nodes. They lend what these hold.
#pragma once

#include "facts/fact.h"
#include "tessel/nodes.h"

namespace tool {

// A distinguished name in the order in which it is stored, `C=BE, O=GlobalSign nv-sa`, escaped by RFC 4514.
Fact NameFact(const void* name);

// The same for one relative distinguished name: a choice that holds a SET OF attributes.
Fact RelativeNameFact(const Asn1Choice& choice);

// A general name, labelled with its kind.
Fact GeneralNameFact(const void* name);
Fact GeneralNamesFact(const void* names);

// The base of a subtree (RFC 5280, 4.2.1.10): a general name whose addresses have a mask.
Fact SubtreeBaseFact(const void* name);

}  // namespace tool
