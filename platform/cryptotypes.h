#pragma once

#include "platform/types.h"

// Records that keys, seeds and signatures are passed in.

/// A block of bytes; `Length` is in bytes. As an output it says on entry how many bytes `Data` has
/// room for, and on return how many were written; with a null `Data` only the length goes back.
struct OpcUa_CryptoBytes
{
    OpcUa_Int32 Length;
    OpcUa_Byte* Data;
};

inline constexpr OpcUa_UInt32 OpcUa_Crypto_KeyType_Random = 1;      ///< Raw random bytes.
inline constexpr OpcUa_UInt32 OpcUa_Crypto_KeyType_Rsa_Private = 5; ///< DER of a private key.
inline constexpr OpcUa_UInt32 OpcUa_Crypto_KeyType_Rsa_Public = 6;  ///< DER of a PKCS#1 public key.

/// A key with its kind.
struct OpcUa_Key
{
    OpcUa_UInt32 Type;
    OpcUa_CryptoBytes Key;
};

/// The properties of a security policy that the functions here ask for.
struct OpcUa_CryptoProvider
{
    OpcUa_UInt32 SymmetricKeyLength; ///< Bytes.
};
