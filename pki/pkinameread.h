#pragma once

#include "pki/uapkiidentity.h"

#include <openssl/types.h>

// Reading distinguished names. Not for users of the layer. The callers hold a PkiErrorScope.

/// The first attribute of a type in a name, as UTF-8; empty without one, for a null name, and for text
/// that can't be converted.
[[nodiscard]] UaString PkiName_ReadField(const X509_NAME* pName, int nid) noexcept;

/// The seven fields of a name.
[[nodiscard]] UaPkiIdentity PkiName_Read(const X509_NAME* pName) noexcept;
