#pragma once

#include "pki/uapkicertificateinfo.h"

#include <openssl/types.h>

// Not for users of the layer. The callers hold a PkiErrorScope.

/// Reads the e-mail address, DNS names, URI and IP addresses of the subjectAltName extension into a
/// record. Without such an extension, or when it can't be read, they are empty; reasons are in the
/// library's queue.
void PkiGeneralNames_Read(const X509* pCertificate, UaPkiCertificateInfo& info) noexcept;
