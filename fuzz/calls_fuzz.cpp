// Random calls on live objects: what is added, taken, copied, cleared and released, in any order. An input is a list of
// calls, each an octet that tells which and the octets of its arguments.
#include <array>
#include <utility>

#include "getters.h"

namespace fuzz {
namespace {

using tessel::Owned;

// A few objects of one type. One that is not there is a null handle, which every function has to refuse.
template <class Node>
class Shelf {
 public:
  // Which of them a call is about.
  Owned<Node>& Pick(Input& input) { return nodes_[input.Below(static_cast<uint32_t>(nodes_.size()))]; }
  // A place for a new one.
  Node** Empty(Input& input) { return Pick(input).Out(); }

 private:
  std::array<Owned<Node>, 3> nodes_;
};

// Gives an object away, when the function that takes it succeeds.
template <class Node>
void Give(Owned<Node>& node, auto take) {
  if (take(node.Get()) == TESSEL_OK) static_cast<void>(node.Release());
}

// Which mutable objects there are. What is lent is used at once, so that it cannot have been released.
struct World {
  Shelf<Certificate> certificates;
  Shelf<Certificates> certificateLists;
  Shelf<X509Crl> crls;
  Shelf<X509Name> names;
  Shelf<X509GeneralName> generalNames;
  Shelf<X509GeneralNames> generalNameLists;
  Shelf<PKIFreeText> texts;
  Shelf<X509Extension> extensions;
  Shelf<X509Extensions> extensionLists;
  Shelf<ExtensionExtendedKeyUsage> purposes;
  Shelf<ExtensionAuthorityInformationAccess> accesses;
  Shelf<ExtensionCrlDistributionPoints> points;
  Shelf<ExtensionCertificatePolicies> policies;
  Shelf<OctetStrings> strings;
  Shelf<LibraryTime> times;
};

// What a copy is encoded as, when the object can be encoded and copied.
template <class Node>
void CheckCopy(const Node* object, auto encode, uint32_t(TESSEL_CALL* copyObject)(const Node*, Node**)) {
  const auto encoding = FetchChecked(encode, object);
  if (!encoding) return;
  Owned<Node> copy;
  Require(copyObject(object, copy.Out()) == TESSEL_OK);
  Require(encoding == FetchChecked(encode, copy));
}

// The name that a call is about: one that stands for itself, or one that a certificate lends.
X509Name* PickName(World& world, Input& input) {
  if (input.Flag()) return world.names.Pick(input);
  X509Name* name = nullptr;
  Certificate* certificate = world.certificates.Pick(input);
  input.Flag() ? GetCertificateIssuer(certificate, &name) : GetCertificateSubject(certificate, &name);
  return name;
}

// Calls `use` with a slot of extensions: a certificate's, or one of the caller's around a list of his own.
void WithExtensions(World& world, Input& input, auto use) {
  if (input.Flag()) {
    Owned<X509Extensions>& list = world.extensionLists.Pick(input);
    X509ExtensionsSlot slot{list.Release()};
    use(&slot);
    list.Reset(slot.list);
  } else {
    X509ExtensionsSlot* slot = nullptr;
    GetCertificateExtensions(world.certificates.Pick(input), &slot);
    use(slot);
  }
}

using Call = void (*)(World&, Input&);

// Append only, so that kept inputs stay what they are.
constexpr Call kCalls[] = {
    // Objects that are made.
    [](World& w, Input& in) { CreateCertificate(w.certificates.Empty(in)); },
    [](World& w, Input& in) { CreateCertificates(w.certificateLists.Empty(in)); },
    [](World& w, Input& in) { CreateX509Crl(w.crls.Empty(in)); },
    [](World& w, Input& in) { CreateX509Name(w.names.Empty(in)); },
    [](World& w, Input& in) { CreateX509GeneralName(w.generalNames.Empty(in)); },
    [](World& w, Input& in) { CreateX509GeneralNames(w.generalNameLists.Empty(in)); },
    [](World& w, Input& in) { CreatePKIFreeText(w.texts.Empty(in)); },
    [](World& w, Input& in) { CreateX509Extensions(w.extensionLists.Empty(in)); },
    [](World& w, Input& in) { CreateExtensionExtendedKeyUsage(w.purposes.Empty(in)); },
    [](World& w, Input& in) { CreateExtensionAuthorityInformationAccess(w.accesses.Empty(in)); },
    [](World& w, Input& in) { CreateExtensionCrlDistributionPoints(w.points.Empty(in)); },
    [](World& w, Input& in) { CreateExtensionCertificatePolicies(w.policies.Empty(in)); },
    [](World& w, Input& in) { CreateOctetStrings(w.strings.Empty(in)); },
    [](World& w, Input& in) { CreateLibraryTime(w.times.Empty(in)); },
    [](World& w, Input& in) {
      X509Extension** place = w.extensions.Empty(in);
      const Bytes oid = in.Oid();
      const Bytes value = in.Some();
      CreateX509Extension(place, oid.data(), in.Below(2), value.data(), SizeOf(value));
    },
    [](World& w, Input& in) {
      X509GeneralName** place = w.generalNames.Empty(in);
      const uint32_t alternative = in.Below(10);
      const Bytes value = alternative == 8 ? in.Oid() : in.Some();
      AllocX509GeneralNameValue(place, alternative, value.data(), SizeOf(value));
    },
    // Objects that are decoded.
    [](World& w, Input& in) {
      Certificate** place = w.certificates.Empty(in);
      const Bytes octets = in.Some();
      DecodeCertificate(octets.data(), SizeOf(octets), place);
    },
    [](World& w, Input& in) {
      X509Crl** place = w.crls.Empty(in);
      const Bytes octets = in.Some();
      DecodeX509Crl(octets.data(), SizeOf(octets), place);
    },
    [](World& w, Input& in) {
      X509Name** place = w.names.Empty(in);
      const Bytes octets = in.Some();
      DecodeX509Name(octets.data(), SizeOf(octets), place);
    },
    [](World& w, Input& in) {
      X509GeneralNames** place = w.generalNameLists.Empty(in);
      const Bytes octets = in.Some();
      DecodeX509GeneralNames(octets.data(), SizeOf(octets), place);
    },
    [](World& w, Input& in) {
      X509Extensions** place = w.extensionLists.Empty(in);
      const Bytes octets = in.Some();
      DecodeX509Extensions(octets.data(), SizeOf(octets), place);
    },
    [](World& w, Input& in) {
      ExtensionCertificatePolicies** place = w.policies.Empty(in);
      const Bytes octets = in.Some();
      DecodeExtensionCertificatePolicies(octets.data(), SizeOf(octets), place);
    },
    [](World& w, Input& in) {
      ExtensionCrlDistributionPoints** place = w.points.Empty(in);
      const Bytes octets = in.Some();
      DecodeExtensionCrlDistributionPoints(octets.data(), SizeOf(octets), place);
    },
    // Objects that are copied.
    [](World& w, Input& in) {
      Owned<Certificate> copy;
      CreateCertificateCopy(w.certificates.Pick(in), copy.Out());
      w.certificates.Pick(in) = std::move(copy);
    },
    [](World& w, Input& in) {
      Owned<X509Name> copy;
      CopyX509Name(PickName(w, in), copy.Out());
      w.names.Pick(in) = std::move(copy);
    },
    [](World& w, Input& in) {
      Owned<X509GeneralName> copy;
      CreateX509GeneralNameCopy(w.generalNames.Pick(in), copy.Out());
      w.generalNames.Pick(in) = std::move(copy);
    },
    [](World& w, Input& in) {
      Owned<X509GeneralNames> copy;
      CopyX509GeneralNames(w.generalNameLists.Pick(in), copy.Out());
      w.generalNameLists.Pick(in) = std::move(copy);
    },
    // What lists and certificates take.
    [](World& w, Input& in) {
      Certificates* list = w.certificateLists.Pick(in);
      Give(w.certificates.Pick(in), [&](Certificate* given) { return AddCertificateToCertificates(list, given); });
    },
    [](World& w, Input& in) {
      ExtensionAuthorityInformationAccess* list = w.accesses.Pick(in);
      const Bytes oid = in.Oid();
      Give(w.generalNames.Pick(in),
           [&](X509GeneralName* given) { return AddExtensionAuthorityInformationAccess(list, oid.data(), given); });
    },
    [](World& w, Input& in) {
      ExtensionCrlDistributionPoints* list = w.points.Pick(in);
      Owned<X509GeneralNames>& fullName = w.generalNameLists.Pick(in);
      Owned<X509GeneralNames>& issuer = w.generalNameLists.Pick(in);
      X509GeneralNames* givenIssuer = issuer.Get() == fullName.Get() || in.Flag() ? nullptr : issuer.Get();
      X509GeneralNames* givenName = in.Flag() ? fullName.Get() : nullptr;
      Owned<X509Name>& relativeName = w.names.Pick(in);
      X509Name* givenRelativeName = in.Flag() ? relativeName.Get() : nullptr;
      if (AddExtensionCrlDistributionPoint(list, givenName, givenRelativeName, in.Octet(), givenIssuer) != TESSEL_OK) {
        return;
      }
      if (givenName != nullptr) static_cast<void>(fullName.Release());
      if (givenRelativeName != nullptr) static_cast<void>(relativeName.Release());
      if (givenIssuer != nullptr) static_cast<void>(issuer.Release());
    },
    [](World& w, Input& in) {
      Certificate* certificate = w.certificates.Pick(in);
      const auto set = in.Flag() ? SetCertificateIssuer_i : SetCertificateSubject_i;
      Give(w.names.Pick(in), [&](X509Name* given) { return set(certificate, given, 0); });
    },
    [](World& w, Input& in) {
      const auto set = in.Flag() ? SetCertificateIssuer : SetCertificateSubject;
      const X509Name* name = PickName(w, in);
      set(w.certificates.Pick(in), name);
    },
    // Names.
    [](World& w, Input& in) {
      X509Name* name = PickName(w, in);
      const Bytes value = in.Some();
      const Bytes oid = in.Oid();
      const uint32_t type = in.Octet();
      AddX509NameEntry(name, value.data(), SizeOf(value), type, oid.data(), in.Below(2));
    },
    [](World& w, Input& in) {
      X509Name* name = PickName(w, in);
      const Bytes value = in.Some();
      const Bytes oid = in.Oid();
      const uint8_t tagClass = in.Octet() & 0xC0;
      AddX509NameEntryExt(name, value.data(), SizeOf(value), tagClass, in.Octet() & 0x20, in.Number(), oid.data(),
                          in.Below(2));
    },
    [](World& w, Input& in) {
      X509Name* name = PickName(w, in);
      const uint32_t rdn = in.Below(4);
      DeleteX509NameEntry(name, rdn, in.Below(3));
    },
    [](World& w, Input& in) {
      X509Name* name = PickName(w, in);
      uint32_t count = 0;
      if (ClearX509Name(name) == TESSEL_OK) Require(GetX509NameRdnCount(name, &count) == TESSEL_OK && count == 0);
    },
    [](World& w, Input& in) {
      X509GeneralNames* list = w.generalNameLists.Pick(in);
      const uint32_t alternative = in.Below(10);
      const Bytes value = alternative == 8 ? in.Oid() : in.Some();
      AddX509GeneralName(list, alternative, value.data(), SizeOf(value));
    },
    [](World& w, Input& in) {
      PKIFreeText* text = w.texts.Pick(in);
      const Bytes value = in.Some();
      AddPKIFreeTextString(text, value.data(), SizeOf(value));
    },
    [](World& w, Input& in) {
      OctetStrings* strings = w.strings.Pick(in);
      const Bytes value = in.Some();
      AddOctetStringsValue(strings, value.data(), SizeOf(value));
      uint32_t count = 0;
      GetOctetStringsCount(strings, &count);
      uint32_t length = 0;
      GetOctetStringsValue(strings, count - 1, nullptr, &length);
      Bytes buffer(length);
      GetOctetStringsValue(strings, count - 1, buffer.data(), &length);
    },
    // Extensions.
    [](World& w, Input& in) {
      WithExtensions(w, in, [&](X509ExtensionsSlot* slot) {
        const Bytes oid = in.Oid();
        const Bytes value = in.Some();
        AddX509ExtensionsExtension(slot, oid.data(), in.Below(2), value.data(), SizeOf(value));
      });
    },
    [](World& w, Input& in) {
      WithExtensions(w, in, [&](X509ExtensionsSlot* slot) { RemoveX509ExtensionsExtension(slot, in.Below(4)); });
    },
    [](World& w, Input& in) {
      WithExtensions(w, in, [&](X509ExtensionsSlot* slot) { RemoveX509ExtensionsExtension2(slot, in.Oid().data()); });
    },
    [](World& w, Input& in) { WithExtensions(w, in, [&](X509ExtensionsSlot* slot) { RemoveX509Extensions(slot); }); },
    [](World& w, Input& in) { WithExtensions(w, in, [&](X509ExtensionsSlot* slot) { ClearX509Extensions(slot); }); },
    [](World& w, Input& in) {
      WithExtensions(w, in, [&](X509ExtensionsSlot* slot) { SetCertificateExtensions(w.certificates.Pick(in), slot); });
    },
    [](World& w, Input& in) {
      const Bytes oid = in.Oid();
      const Bytes value = in.Some();
      SetX509Extension(w.extensions.Pick(in), oid.data(), in.Below(2), value.data(), SizeOf(value));
    },
    [](World& w, Input& in) {
      ExtensionExtendedKeyUsage* list = w.purposes.Pick(in);
      AddExtensionExtendedKeyUsage(list, in.Oid().data());
    },
    [](World& w, Input& in) {
      ExtensionExtendedKeyUsage* list = w.purposes.Pick(in);
      RemoveExtensionExtendedKeyUsage(list, in.Below(4));
    },
    [](World& w, Input& in) {
      ExtensionAuthorityInformationAccess* list = w.accesses.Pick(in);
      RemoveExtensionAuthorityInformationAccess(list, in.Below(4));
    },
    [](World& w, Input& in) {
      ExtensionCrlDistributionPoints* list = w.points.Pick(in);
      RemoveExtensionCrlDistributionPoint(list, in.Below(4));
    },
    [](World& w, Input& in) {
      ExtensionCertificatePolicies* list = w.policies.Pick(in);
      uint32_t index = 0;
      AddExtensionPolicyInformation(list, in.Oid().data(), &index);
    },
    [](World& w, Input& in) {
      ExtensionCertificatePolicies* list = w.policies.Pick(in);
      RemoveExtensionPolicyInformation(list, in.Below(4));
    },
    [](World& w, Input& in) {
      ExtensionCertificatePolicies* list = w.policies.Pick(in);
      const uint32_t policy = in.Below(3);
      const Bytes oid = in.Oid();
      const Bytes value = in.Some();
      AddExtensionPolicyQualifier(list, policy, oid.data(), value.data(), SizeOf(value));
    },
    [](World& w, Input& in) {
      ExtensionCertificatePolicies* list = w.policies.Pick(in);
      const uint32_t policy = in.Below(3);
      RemoveExtensionPolicyQualifier(list, policy, in.Below(3));
    },
    // Certificates.
    [](World& w, Input& in) { SetCertificateVersion(w.certificates.Pick(in), in.Below(4)); },
    [](World& w, Input& in) {
      constexpr uint32_t(TESSEL_CALL * kSetters[])(Certificate*, const uint8_t*, uint32_t) = {
          SetCertificateSerialNumber, SetCertificatePublicKey, SetCertificateSignature,
          SetCertificateGostR34102001PublicKey};
      const auto set = kSetters[in.Below(std::size(kSetters))];
      Certificate* certificate = w.certificates.Pick(in);
      const Bytes octets = in.Some();
      set(certificate, octets.data(), SizeOf(octets));
    },
    [](World& w, Input& in) {
      const auto set = in.Flag() ? SetCertificateIssuerUniqueId : SetCertificateSubjectUniqueId;
      Certificate* certificate = w.certificates.Pick(in);
      const Bytes octets = in.Some();
      set(certificate, in.Flag() ? octets.data() : nullptr, SizeOf(octets), static_cast<uint8_t>(in.Below(9)));
    },
    [](World& w, Input& in) {
      const auto set = in.Flag() ? SetCertificateValidNotBefore : SetCertificateValidNotAfter;
      const LibraryTime* time = w.times.Pick(in);
      set(w.certificates.Pick(in), time);
    },
    [](World& w, Input& in) {
      const auto set = in.Flag() ? SetCertificatePublicKeyAlgorithmOidAndParameters
                                 : SetCertificateSignatureAlgorithmOidAndParameters;
      Certificate* certificate = w.certificates.Pick(in);
      const Bytes oid = in.Oid();
      const Bytes parameters = in.Some();
      set(certificate, oid.data(), parameters.data(), SizeOf(parameters));
    },
    [](World& w, Input& in) {
      Certificate* certificate = w.certificates.Pick(in);
      SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(certificate, 102, 1, in.Below(14), in.Below(5),
                                                                   in.Below(10));
      SetCertificateGostR34102001SignatureAlgorithmID(certificate, 100, in.Flag() ? 0 : 0xFF);
    },
    [](World& w, Input& in) { SetCertificateSubjectKeyIdentifier(w.certificates.Pick(in)); },
    [](World& w, Input& in) {
      const Certificate* issuer = w.certificates.Pick(in);
      SetCertificateAuthorityKeyIdentifier(w.certificates.Pick(in), issuer);
    },
    [](World& w, Input& in) {
      Certificate* certificate = w.certificates.Pick(in);
      const X509Name* issuer = in.Flag() ? PickName(w, in) : nullptr;
      const Bytes identifier = in.Some();
      const Bytes serial = in.Some();
      SetCertificateAuthorityKeyIdentifier2(certificate, in.Flag() ? identifier.data() : nullptr, SizeOf(identifier),
                                            issuer, serial.data(), SizeOf(serial));
    },
    [](World& w, Input& in) {
      Certificate* certificate = w.certificates.Pick(in);
      SetCertificateArdekKeyIdentifier(certificate, in.Text().c_str());
    },
    [](World& w, Input& in) {
      Certificate* certificate = w.certificates.Pick(in);
      SetCertificateExtensionCrlDistributionPoints(certificate, in.Text().c_str());
    },
    [](World& w, Input& in) {
      LibraryTime* time = w.times.Pick(in);
      SetLibraryTime(time, in.Octet(), in.Octet(), 1900 + in.Octet(), in.Octet(), in.Octet(), in.Octet());
    },
    // Objects that are read, and objects that are compared with their copies.
    [](World& w, Input& in) { ReadCertificate(w.certificates.Pick(in)); },
    [](World& w, Input& in) { ReadCertificates(w.certificateLists.Pick(in)); },
    [](World& w, Input& in) { ReadName(w.names.Pick(in)); },
    [](World& w, Input& in) { ReadGeneralName(w.generalNames.Pick(in)); },
    [](World& w, Input& in) { ReadGeneralNames(w.generalNameLists.Pick(in)); },
    [](World& w, Input& in) { ReadFreeText(w.texts.Pick(in)); },
    [](World& w, Input& in) { ReadExtension(w.extensions.Pick(in)); },
    [](World& w, Input& in) { WithExtensions(w, in, [&](X509ExtensionsSlot* slot) { ReadExtensions(slot); }); },
    [](World& w, Input& in) { ReadExtendedKeyUsage(w.purposes.Pick(in)); },
    [](World& w, Input& in) { ReadAccessDescriptions(w.accesses.Pick(in)); },
    [](World& w, Input& in) { ReadDistributionPoints(w.points.Pick(in)); },
    [](World& w, Input& in) { ReadPolicies(w.policies.Pick(in)); },
    [](World& w, Input& in) { CheckCopy(w.certificates.Pick(in).Get(), EncodeCertificate, CreateCertificateCopy); },
    [](World& w, Input& in) {
      CheckCopy(w.certificateLists.Pick(in).Get(), EncodeCertificates, CreateCertificatesCopy);
    },
    [](World& w, Input& in) { CheckCopy(w.crls.Pick(in).Get(), EncodeX509Crl, CreateX509CrlCopy); },
    [](World& w, Input& in) { CheckCopy(PickName(w, in), EncodeX509Name, CopyX509Name); },
    [](World& w, Input& in) {
      CheckCopy(w.generalNameLists.Pick(in).Get(), EncodeX509GeneralNames, CopyX509GeneralNames);
    },
    [](World& w, Input& in) { CheckCopy(w.texts.Pick(in).Get(), EncodePKIFreeText, CreatePKIFreeTextCopy); },
};

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::World world;
  fuzz::Input input(fuzz::Octets(data, size));
  while (!input.IsEmpty()) fuzz::kCalls[input.Below(std::size(fuzz::kCalls))](world, input);
  return 0;
}
