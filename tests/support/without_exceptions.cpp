// The C++ headers without exceptions and RTTI: this file only has to compile.
#include "tessel/tessel.hpp"

uint32_t DecodeWithoutExceptions(tessel::Octets octets, std::string& subject);

uint32_t DecodeWithoutExceptions(tessel::Octets octets, std::string& subject) {
  tessel::Owned<Certificate> certificate;
  X509Name* name = nullptr;
  uint32_t status = tessel::Try(DecodeCertificate, octets, certificate.Out());
  if (status == TESSEL_OK) status = tessel::Try(GetCertificateSubject, certificate, &name);
  if (status == TESSEL_OK) subject = tessel::NameText(name);
  return status;
}
