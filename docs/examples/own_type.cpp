// Gives a certificate an extension of one's own, reads it back, and changes its value.
#include <iostream>
#include <iterator>
#include <string>
#include <tessel/tessel.hpp>

using tessel::Bytes, tessel::Call, tessel::Fetch, tessel::Get, tessel::Make, tessel::Owned;

constexpr tessel::ObjectIdentifier kSpendingLimitId("1.3.6.1.4.1.99999.1");

// SpendingLimit ::= SEQUENCE { amount INTEGER, currency PrintableString, note [0] IMPLICIT UTF8String OPTIONAL }
struct SpendingLimit {
  Asn1Value* amount;
  Asn1Value* currency;
  Asn1Value* note;
};
constexpr auto kSpendingLimit = tessel::Sequence{
    tessel::Member<&SpendingLimit::amount, tessel::kInteger>,
    tessel::Member<&SpendingLimit::currency, tessel::kPrintableString>,
    tessel::Member<&SpendingLimit::note, tessel::Optional<tessel::Implicit<0, tessel::kUtf8String>>>,
};

tessel::Octets OctetsOf(std::string_view text) { return {reinterpret_cast<const uint8_t*>(text.data()), text.size()}; }

void Show(const SpendingLimit& limit) {
  const tessel::Octets currency = tessel::ContentOf(*limit.currency);
  std::cout << Get(GetAsn1Int32, limit.amount) << ' ' << std::string(currency.begin(), currency.end())
            << (limit.note == nullptr ? "" : ", with a note") << '\n';
}

int main() {
  const std::string pem(std::istreambuf_iterator<char>(std::cin), {});
  try {
    const Owned<Certificate> certificate = Make(DecodeCertificate, Fetch(DecodePem, pem));

    // A value put together from nodes of one's own, which live until the end of their scope.
    tessel::NumberNode amount(TESSEL_KIND_INTEGER, 500);
    Asn1Value currency = tessel::Borrow(TESSEL_KIND_PRINTABLE_STRING, OctetsOf("EUR"));
    const Bytes value = tessel::Encode(kSpendingLimit, {amount.Member(), &currency, nullptr});
    X509ExtensionsSlot* const extensions = Get(GetCertificateExtensions, certificate);
    Call(AddX509ExtensionsExtension, extensions, kSpendingLimitId, true, value);

    // A value that is read is a tree. What differs from it is put together from its nodes and from others.
    const Bytes read = Fetch(GetCertificateExtensionValue, certificate, kSpendingLimitId);
    const tessel::TreeOf<SpendingLimit> limit = tessel::Decode(kSpendingLimit, read);
    Show(*limit);
    SpendingLimit changed = *limit;
    Asn1Value note = tessel::Borrow(TESSEL_KIND_UTF8_STRING, OctetsOf("per month"));
    changed.note = &note;
    Show(changed);
    std::cout << tessel::Hex(tessel::Encode(kSpendingLimit, changed)) << '\n';
  } catch (const tessel::Error& error) {
    std::cout << error.what() << '\n';
  }
}
