// How a certificate is shown.
#pragma once

namespace tool {

// Prints a decoded Certificate.
void PrintCertificate(const void* certificate);

}  // namespace tool
