// How a certificate is shown.
#ifndef TESSEL_TOOLS_SHOW_CERTIFICATE_H
#define TESSEL_TOOLS_SHOW_CERTIFICATE_H

namespace tool {

// Prints a decoded Certificate.
void PrintCertificate(const void* certificate);

}  // namespace tool

#endif
