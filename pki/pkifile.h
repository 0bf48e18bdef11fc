#pragma once

#include "pki/pkibytes.h"
#include "platform/types.h"

#include <cstdio>
#include <optional>

class UaPkiErrorList;
class UaUniString;

// Whole files for the PKI objects: paths of UaUniString go through the file engine, `char*` paths
// through OpenSSL's file BIO. Not for users of the layer.
//
// Nothing is read that isn't a regular file, and nothing above a limit; memory grows with what was
// really read. Streams are unbuffered, so that no key stays behind in a buffer of theirs. The library's
// error queue is used: the caller holds a PkiErrorScope, and "drained" means addLibraryErrors.

inline constexpr OpcUa_Int64 PkiFile_LargestSize = 1024 * 1024; ///< Certificates, requests, keys.
inline constexpr OpcUa_Int64 PkiFile_LargestListSize = 64 * 1024 * 1024; ///< Revocation lists.

/// Reads a file through the engine; nothing on failure, with "Could not open file for reading", "The
/// file is too large" or "Could not read file". `mode` is that of the engine's fopen.
[[nodiscard]] std::optional<PkiBytes> PkiFile_Read(const UaUniString& path, const char* mode,
                                                   OpcUa_Int64 limit, const UaPkiErrorList& errors);

/// The same after the engine was asked for the size: "Could not get file size" comes first.
[[nodiscard]] std::optional<PkiBytes> PkiFile_ReadSized(const UaUniString& path, const char* mode,
                                                        OpcUa_Int64 limit,
                                                        const UaPkiErrorList& errors);

/// Reads a file through a file BIO. A file that can't be opened drains the library's errors; the other
/// messages are those of the engine's form.
[[nodiscard]] std::optional<PkiBytes> PkiFile_Read(const char* path, OpcUa_Int64 limit,
                                                   const UaPkiErrorList& errors);

/// Writes a file through the engine. False on failure, with "Could not open file for writing" or
/// "Could not write file"; a short write and a failing close count.
[[nodiscard]] bool PkiFile_Write(const UaUniString& path, const char* mode, const void* bytes,
                                 std::size_t size, const UaPkiErrorList& errors);

/// Writes a file through a file BIO. False on failure, with the library's errors drained; a short
/// write and a failing close count.
[[nodiscard]] bool PkiFile_Write(const char* path, const void* bytes, std::size_t size,
                                 const UaPkiErrorList& errors);

/// Puts the reason why a file could not be written, which errno tells, into the library's queue as a
/// file BIO does where it can't open one.
void PkiFile_RaiseError() noexcept;

enum class PkiFileStatus
{
    Good,
    NotOpened,
    NotWritten
};

/// Both forms of PkiFile_Write without a message for a file that can't be opened.
[[nodiscard]] PkiFileStatus PkiFile_TryWrite(const UaUniString& path, const char* mode,
                                             const void* bytes, std::size_t size,
                                             const UaPkiErrorList& errors);
[[nodiscard]] PkiFileStatus PkiFile_TryWrite(const char* path, const void* bytes, std::size_t size,
                                             const UaPkiErrorList& errors);
