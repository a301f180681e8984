// NSS. It decodes by templates into an arena, which is freed as a whole.
#include <cert.h>
#include <certdb.h>
#include <nss.h>
#include <secasn1.h>
#include <secder.h>
#include <secitem.h>
#include <secoid.h>
#include <secport.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "peers/peers.h"

namespace bench::nss {
namespace {

// Room of an arena's first block; NSS's own functions take the same.
constexpr unsigned long kChunk = DER_DEFAULT_CHUNKSIZE;

struct ArenaDeleter {
  void operator()(PLArenaPool* arena) const { PORT_FreeArena(arena, PR_FALSE); }
};

// A value in an arena of its own.
template <class Value>
struct InArena {
  std::unique_ptr<PLArenaPool, ArenaDeleter> arena;
  Value* value = nullptr;
  explicit operator bool() const { return value != nullptr; }
};

struct CrlDeleter {
  void operator()(CERTSignedCrl* crl) const { SEC_DestroyCrl(crl); }
};
using CrlValue = std::unique_ptr<CERTSignedCrl, CrlDeleter>;

// Octets that NSS has allocated.
class AllocatedItem {
 public:
  AllocatedItem() = default;
  AllocatedItem(AllocatedItem&& other) noexcept : item_(std::exchange(other.item_, {})) {}
  AllocatedItem& operator=(AllocatedItem&&) = delete;
  ~AllocatedItem() { SECITEM_FreeItem(&item_, PR_FALSE); }

  SECItem* Get() { return &item_; }
  operator Octets() const { return {item_.data, item_.len}; }

 private:
  SECItem item_{};
};

// May be called again.
void Initialize() { Require(NSS_NoDB_Init(nullptr) == SECSuccess, "NSS cannot be initialised"); }

Label Peer(const char* name, const char* remark) { return {Kind::kPeer, std::string("NSS ") + name, remark}; }

SECItem ItemOf(Octets octets) {
  return {siBuffer, const_cast<uint8_t*>(octets.data()), static_cast<unsigned int>(octets.size())};
}

template <class Value>
auto Decoder(const SEC_ASN1Template* type) {
  return [type](Octets octets) {
    InArena<Value> decoded{{PORT_NewArena(kChunk), {}}, nullptr};
    auto* value = PORT_ArenaZNew(decoded.arena.get(), Value);
    const SECItem input = ItemOf(octets);
    if (SEC_QuickDERDecodeItem(decoded.arena.get(), value, type, &input) == SECSuccess) decoded.value = value;
    return decoded;
  };
}

template <class Value>
auto Encoder(const SEC_ASN1Template* type) {
  return [type](const InArena<Value>& decoded) {
    AllocatedItem result;
    SEC_ASN1EncodeItem(nullptr, result.Get(), decoded.value, type);
    return result;
  };
}

Label DecodingLabel() {
  return Peer("`SEC_QuickDERDecodeItem`",
              "the same tree, in an arena; contents are not copied but point into the input, which has to stay.");
}

Label EncodingLabel() {
  return Peer("`SEC_ASN1EncodeItem`",
              "counts the size and writes, in one call, into a block that it allocates. The time for long lists grows "
              "with the square of their length.");
}

CrlValue DecodeCrl(Octets octets) {
  SECItem input = ItemOf(octets);
  return CrlValue(CERT_DecodeDERCrlWithFlags(nullptr, &input, SEC_CRL_TYPE, CRL_DECODE_DONT_COPY_DER));
}

size_t CountEntries(const CERTCrl& crl) {
  size_t count = 0;
  while (crl.entries != nullptr && crl.entries[count] != nullptr) ++count;
  return count;
}

using Certificate = InArena<CERTCertificate>;

std::optional<PRTime> ReadNotBefore(const Certificate& certificate) {
  PRTime time = 0;
  if (DER_DecodeTimeChoice(&time, &certificate.value->validity.notBefore) != SECSuccess) return std::nullopt;
  return time;
}

std::optional<AllocatedItem> FindBasicConstraints(const Certificate& certificate) {
  AllocatedItem value;
  if (CERT_FindCertExtension(certificate.value, SEC_OID_X509_BASIC_CONSTRAINTS, value.Get()) != SECSuccess) {
    return std::nullopt;
  }
  return value;
}

}  // namespace

void AddCertificates(const std::vector<CertificateInput>& inputs, CertificateOperations& to) {
  Initialize();
  const SEC_ASN1Template* type = SEC_ASN1_GET(SEC_SignedCertificateTemplate);
  const auto decode = Decoder<CERTCertificate>(type);
  AddDecoder(to.decode, DecodingLabel(), inputs, decode,
             [](const Certificate& certificate, const CertificateInput& input) {
               const SECItem& serial = certificate.value->serialNumber;
               return IsSerialNumber({serial.data, serial.len}, input);
             });
  const auto held = Hold(inputs, decode);
  AddEncoder(to.encode, EncodingLabel(), held, Encoder<CERTCertificate>(type));
  AddReader(to.notBefore, Peer("`DER_DecodeTimeChoice`", "reads the text into microseconds since 1970."), held,
            ReadNotBefore,
            [](PRTime time, const CertificateInput& input) { return IsNotBefore(time / PR_USEC_PER_SEC, input); });
  AddReader(to.extension, Peer("`CERT_FindCertExtension`", "allocates a copy of the value."), held,
            FindBasicConstraints,
            [](const AllocatedItem& value, const CertificateInput& input) { return IsBasicConstraints(value, input); });
}

void AddCrls(const std::vector<CrlInput>& inputs, CrlOperations& to) {
  Initialize();
  const SEC_ASN1Template* type = SEC_ASN1_GET(CERT_SignedCrlTemplate);
  const auto decode = Decoder<CERTSignedCrl>(type);
  AddCrlDecoder(to, DecodingLabel(), inputs, decode,
                [](const InArena<CERTSignedCrl>& crl) { return CountEntries(crl.value->crl); });
  AddCrlDecoder(to,
                Peer("`CERT_DecodeDERCrlWithFlags`",
                     "its ordinary call, told not to copy the input: the same tree, and checks of its own."),
                inputs, DecodeCrl, [](const CrlValue& crl) { return CountEntries(crl->crl); });
  // With 200,000 entries one call takes seconds.
  if (IsSmall(inputs)) AddEncoder(to.encode, EncodingLabel(), Hold(inputs, decode), Encoder<CERTSignedCrl>(type));
}

}  // namespace bench::nss
