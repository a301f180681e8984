// What certificate policies say.
#include <string>
#include <utility>

#include "describe/describer.h"
#include "describe/primitives.h"
#include "describe/types.h"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

using namespace tessel;

// RFC 5280, 4.2.1.4. The texts are of any string type.
struct NoticeNumbers : ListOf<Asn1Value> {};
constexpr auto kNoticeNumbers = SequenceOf<NoticeNumbers, kInteger>();

struct NoticeReference {
  Asn1Any* organization;
  NoticeNumbers* noticeNumbers;
};
constexpr auto kNoticeReference = Sequence{
    Member<&NoticeReference::organization, kAny>,
    Member<&NoticeReference::noticeNumbers, kNoticeNumbers>,
};

struct UserNotice {
  NoticeReference* noticeRef;
  Asn1Any* explicitText;
};
constexpr auto kUserNotice = Sequence{
    Member<&UserNotice::noticeRef, Optional<kNoticeReference>>,
    Member<&UserNotice::explicitText, Optional<kAny>>,
};

Fact FactOf(const NoticeReference& reference) {
  Fact fact = Describer<>::DescribeParts(kNoticeReference, reference);
  fact.HideParts();
  fact.text = fact.parts.front().text;
  for (uint32_t i = 0; i < reference.noticeNumbers->count; ++i) {
    fact.text += Concat(", ", IntegerText(ContentOf(*reference.noticeNumbers->At(i))));
  }
  return fact;
}

constexpr Sayings kSayings{Say<&UserNotice::noticeRef>{.label = "Reference"}};

Fact FactOf(const UserNotice& notice) {
  Fact fact = Describer<kSayings>::DescribeParts(kUserNotice, notice);
  if (notice.explicitText == nullptr) return fact;
  Fact& text = fact.parts.back();
  text.hidden = true;
  fact.text = text.text;
  return fact;
}

}  // namespace

Fact FactOf(const PolicyQualifierInfo& qualifier) {
  const Octets value = ContentOf(*qualifier.qualifier);
  const std::string dotted = OidText(ContentOf(*qualifier.policyQualifierId));
  Fact fact = FactOf(*qualifier.policyQualifierId);
  const std::string name = std::exchange(fact.text, {});
  if (dotted == "1.3.6.1.5.5.7.2.1") {
    fact.Add("value", "CPS", ElementFact(value));
  } else if (dotted == "1.3.6.1.5.5.7.2.2") {
    fact.Add("value", "User notice", DecodedOrHexFact(kType<kUserNotice>, value));
  } else {
    fact.Add("value", name, UnreadFact(value));
  }
  return fact;
}

Fact FactOf(const PolicyInformation& policy) {
  Fact fact = FactOf(*policy.policyIdentifier);
  const PolicyQualifiers* qualifiers = policy.policyQualifiers;
  if (qualifiers == nullptr || qualifiers->count == 0) return fact;
  fact.Add("qualifiers", {}, Describer<>::Describe(kPolicyQualifiers, *qualifiers));
  return fact;
}

}  // namespace tool
