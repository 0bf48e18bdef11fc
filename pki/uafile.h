#pragma once

#include "base/uaunistring.h"
#include "platform/types.h"

#include <cstdio>

/// A file opened through the file engine. It is closed with the object. One object belongs to one
/// thread at a time; it moves but isn't copied.
class UaFile
{
public:
    explicit UaFile(UaUniString path) noexcept;
    UaFile(const UaFile&) = delete;
    UaFile(UaFile&& other) noexcept;
    UaFile& operator=(const UaFile&) = delete;
    UaFile& operator=(UaFile&& other) noexcept;
    ~UaFile();

    [[nodiscard]] const UaUniString& path() const noexcept { return m_path; }
    [[nodiscard]] bool exists() const;
    /// Bytes; -1 when the file can't be opened.
    [[nodiscard]] OpcUa_Int64 size() const;

    /// Opens the file in a mode of the C library; one that is open already is closed first.
    bool open(const char* mode);
    [[nodiscard]] bool isOpen() const noexcept { return m_pStream != nullptr; }
    /// Bytes read, 0 at the end, after a failure and for a file that isn't open.
    OpcUa_Int64 read(void* buffer, OpcUa_Int64 size);
    /// Bytes written; 0 for a file that isn't open.
    OpcUa_Int64 write(const void* buffer, OpcUa_Int64 size);
    /// False when what was written didn't arrive, and for a file that isn't open.
    bool close();

    /// The stream, borrowed; null for a file that isn't open.
    [[nodiscard]] std::FILE* stream() const noexcept { return m_pStream; }

private:
    UaUniString m_path;
    std::FILE* m_pStream = nullptr;
};
