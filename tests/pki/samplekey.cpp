#include "tests/pki/samplekey.h"

namespace {

constexpr int keySize = 2048;

} // namespace

const UaPkiRSAKeyPair& sampleKeyPair()
{
    static const UaPkiRSAKeyPair keyPair(keySize);
    return keyPair;
}

const UaPkiRSAKeyPair& otherKeyPair()
{
    static const UaPkiRSAKeyPair keyPair(keySize);
    return keyPair;
}
