// Shows the certificates of a PEM text, and changes a copy of the last one.
#include <iostream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <tessel/tessel.hpp>

using tessel::Call, tessel::Fetch, tessel::Get, tessel::Into, tessel::Make, tessel::Owned;

constexpr tessel::ObjectIdentifier kKeyUsage("2.5.29.15");

void ShowExtensions(Certificate* certificate) {
  const X509ExtensionsSlot* slot = Get(GetCertificateExtensions, certificate);
  for (uint32_t i = 0; i < Get(GetX509ExtensionsExtensionsCount, slot); ++i) {
    tessel::ObjectIdentifier identifier;
    tessel::Bytes value;
    uint32_t critical = 0;
    Call(GetX509ExtensionsExtension, slot, i, Into(identifier), &critical, Into(value));
    std::cout << (critical != 0 ? "  critical " : "  ") << KnownName(identifier) << ' ' << identifier.Text();
    if (identifier == kKeyUsage) std::cout << ": " << Get(DecodeExtensionKeyUsage, value);
    std::cout << '\n';
  }
}

void Show(Certificate* certificate) {
  std::cout << "subject " << tessel::NameText(Get(GetCertificateSubject, certificate)) << '\n'
            << "serial number " << tessel::Hex(Fetch(GetCertificateSerialNumber, certificate)) << '\n';
  ShowExtensions(certificate);
}

void Change(Certificate* certificate) {
  const Owned<Certificate> copy = Make(CreateCertificateCopy, certificate);
  Call(SetCertificateSerialNumber, copy, tessel::Bytes{0x2A});
  X509Name* const subject = Get(GetCertificateSubject, copy);  // lent: it belongs to the copy
  Call(AddX509NameEntry, subject, "B-17", TESSEL_KIND_PRINTABLE_STRING, tessel::ObjectIdentifier("2.5.4.5"), true);
  Show(copy);
  Call(SetCertificateVersion, copy, 7);
}

int main() {
  const std::string text(std::istreambuf_iterator<char>(std::cin), {});
  Owned<Certificate> certificate;
  try {
    for (tessel::PemReader reader(text); const std::optional<tessel::PemBlock> block = reader.Next();) {
      std::cout << "line " << block->line << ": " << block->label << '\n';
      if (!block->problem.empty()) throw std::runtime_error(block->problem);
      certificate = Make(DecodeCertificate, block->octets);
      Show(certificate);
    }
    std::cout << "a copy\n";
    Change(certificate);
  } catch (const tessel::Error& error) {
    std::cout << "status " << error.Status() << ": " << error.what() << '\n';
  } catch (const std::exception& error) {
    std::cout << error.what() << '\n';
  }
}
