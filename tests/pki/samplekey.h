#pragma once

#include "pki/uapkirsakeypair.h"

/// One RSA key of 2048 bits for the whole process, made at the first call: making keys is slow.
[[nodiscard]] const UaPkiRSAKeyPair& sampleKeyPair();

/// Another one, for those who sign and those who are signed.
[[nodiscard]] const UaPkiRSAKeyPair& otherKeyPair();
