#pragma once

#include <openssl/types.h>

// Not for users of the layer.

/// The most rounds of a key derivation that are worked through: some seconds, and several times what any
/// program writes. For scrypt they are the product of its three costs.
inline constexpr long PkiKeyDerivation_MostRounds = 5'000'000;
inline constexpr long PkiKeyDerivation_MostScryptCost = 1L << 24;

/// Whether the scheme by which a private key is encrypted can be worked through in a reasonable time.
/// The file says how many rounds it takes, and OpenSSL would work for hours on what a hostile one
/// claims. True for schemes whose rounds can't be read: the library refuses them.
[[nodiscard]] bool PkiKeyDerivation_IsBearable(const X509_ALGOR* pScheme) noexcept;
