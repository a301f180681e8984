// Facts about names.
#pragma once

#include "ber.h"
#include "fact.h"
#include "tessel/tessel.h"

namespace tool {

// A distinguished name in the order in which it is stored, `C=BE, O=GlobalSign nv-sa`, escaped by RFC 4514.
Fact NameFact(const X509Name* name);

// The same for one relative distinguished name, the node of a SET OF attributes.
Fact RelativeNameFact(void* attributes);

// A general name, labelled with its kind.
Fact GeneralNameFact(const X509GeneralName* name);
Fact GeneralNamesFact(const X509GeneralNames* names);

// The base of a subtree (RFC 5280, 4.2.1.10): a general name whose addresses have a mask.
Fact SubtreeBaseFact(const X509GeneralName* name);

}  // namespace tool
