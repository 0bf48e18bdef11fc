#pragma once

#include "tests/platform/cryptosupport.h"

/// The two halves of a key with records over them.
struct RsaPair
{
    Bytes publicDer;
    Bytes privateDer;

    [[nodiscard]] OpcUa_Key publicKey() const
    {
        return keyOver(OpcUa_Crypto_KeyType_Rsa_Public, publicDer);
    }
    [[nodiscard]] OpcUa_Key privateKey() const
    {
        return keyOver(OpcUa_Crypto_KeyType_Rsa_Private, privateDer);
    }
};

/// Makes a key of 1024 or 2048 bits.
[[nodiscard]] RsaPair generateRsaPair(OpcUa_UInt32 bits);

/// Lets the openssl program make a key of any size.
[[nodiscard]] RsaPair makeRsaPairByProgram(unsigned bits);
