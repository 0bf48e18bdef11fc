#pragma once

#include "platform/cryptotypes.h"

// RSA keys, encryption and signatures. Keys pass as DER and are decoded for each call. All functions
// may be called from any thread and take no lock.
//
// Statuses of all functions: `BadInvalidArgument` for null pointers and a key that is empty or of the
// wrong type, `BadUnexpectedError` for a key that can't be decoded, `Bad` when the library fails.
// A buffer says how many bytes it has room for; one that is too small is `BadInvalidArgument`, and
// with a null buffer only the length goes back. A length of an output is 0 after a failure of the
// library, and what was written by then is wiped.

inline constexpr OpcUa_Int32 OpcUa_Rsa_PaddingPkcs1 = 1; ///< Takes 11 bytes of each block.
inline constexpr OpcUa_Int32 OpcUa_Rsa_PaddingNone = 3;
inline constexpr OpcUa_Int32 OpcUa_Rsa_PaddingOaep =
    4; ///< With SHA-1; takes 42 bytes of each block.

/// The one format of key files.
inline constexpr OpcUa_Int32 OpcUa_KeyFileFormat_Pem = 2;

/// The largest key file in bytes that is read.
inline constexpr OpcUa_UInt32 OpcUa_KeyFile_LargestSize = 1048576;

/// Makes a key of 1024 or 2048 bits with the exponent 65537 and writes both halves as PKCS#1 DER with
/// their types. DER of a private key varies by some bytes: the length that goes back for null data,
/// which is also the room that is asked for, is the most that a key of this size can need. No key is
/// made when both data are null. Any other number of bits is `BadInvalidArgument`.
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_RSA_GenerateKeys(OpcUa_UInt32 bits, OpcUa_Key* publicKey, OpcUa_Key* privateKey);

/// Answers the password question of the key loader when there is no password: traces a warning and
/// returns 0, so that the key doesn't load and nobody is asked on a terminal.
int OpcUa_P_OpenSSL_RSA_pem_password_cb(char* buffer, int size, int rwflag, void* userData);

/// Reads an RSA private key from a PEM file. `password` may be null. `path` names a regular file of
/// at most OpcUa_KeyFile_LargestSize bytes. `BadNotSupported` for a format other than PEM and for a
/// key of another algorithm; `Bad` for a file that can't be read or holds no key, and for a password
/// that is wrong or missing.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_LoadPrivateKey(const char* path,
                                                                  OpcUa_Int32 format,
                                                                  const char* password,
                                                                  OpcUa_Key* privateKey);

/// Writes an RSA private key to a PEM file ("BEGIN RSA PRIVATE KEY"), for its owner alone; a file
/// that was there is replaced as a whole and keeps its mode. The key is not encrypted, with a
/// password neither: no cipher goes with it. `BadNotSupported` for a format other than PEM, `Bad` when
/// the file can't be written; the old file is untouched then.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_SavePrivateKey(const char* path,
                                                                  OpcUa_Int32 format,
                                                                  const char* password,
                                                                  const OpcUa_Key* privateKey);

/// The size of a public key in bits; -1 in `*bits` after a failure.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_GetKeySize(const OpcUa_Key* publicKey,
                                                              OpcUa_Int32* bits);

/// Encrypts in blocks, each of the key's size less what the padding takes; the last one may be
/// shorter, but not without padding. `*outputLength` is the room of `output` on entry and the number
/// of bytes on return. `BadInvalidArgument` for an empty input, `BadNotSupported` for another padding.
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_RSA_PublicEncrypt(const OpcUa_Byte* input, OpcUa_UInt32 inputLength,
                                  const OpcUa_Key* publicKey, OpcUa_Int32 padding,
                                  OpcUa_Byte* output, OpcUa_UInt32* outputLength);

/// Decrypts what OpcUa_P_OpenSSL_RSA_PublicEncrypt made. `BadInvalidArgument` for an input that is
/// empty or no whole number of blocks, `BadNotSupported` for another padding. With a null `output`
/// the length is the most that the blocks can hold.
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_RSA_PrivateDecrypt(const OpcUa_Byte* input, OpcUa_UInt32 inputLength,
                                   const OpcUa_Key* privateKey, OpcUa_Int32 padding,
                                   OpcUa_Byte* output, OpcUa_UInt32* outputLength);

/// Signs a digest (PKCS#1 v1.5). `digestType` is the library's number of the digest's algorithm, such
/// as 64 for SHA-1 or 672 for SHA-256. A failure of the library is traced; its error queue of this
/// thread is empty afterwards.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_PrivateSign(const OpcUa_Byte* digest,
                                                               OpcUa_UInt32 digestLength,
                                                               const OpcUa_Key* privateKey,
                                                               OpcUa_Int32 digestType,
                                                               OpcUa_CryptoBytes* signature);

/// Checks a signature of OpcUa_P_OpenSSL_RSA_PrivateSign. `BadSignatureInvalid` when it doesn't fit,
/// `BadInvalidArgument` for one whose length is no multiple of the key's size.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_PublicVerify(const OpcUa_Byte* digest,
                                                                OpcUa_UInt32 digestLength,
                                                                const OpcUa_Key* publicKey,
                                                                OpcUa_Int32 digestType,
                                                                const OpcUa_CryptoBytes* signature);
