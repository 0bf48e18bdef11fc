#pragma once

#include "pki/uaabstractfileengine.h"

/// The file engine over the operating system. It has no state and may be used by several threads.
///
/// Paths are sequences of bytes to some systems: there pairs of surrogates become the one character
/// that they stand for, and a byte of a name that belongs to no UTF-8 character becomes a single unit
/// between U+DC80 and U+DCFF, so that every name that entryList gives can be opened. A path with a 0
/// unit inside is refused everywhere.
class UaFileEngine final : public UaAbstractFileEngine
{
public:
    bool remove(const UaUniString& path) override;
    /// The target is replaced as a whole: after a failure what was there is untouched. It gets the
    /// source's permissions. A target that may not be written, or that is the source itself, is refused.
    bool copy(const UaUniString& from, const UaUniString& to) override;
    bool rename(const UaUniString& from, const UaUniString& to) override;
    bool link(const UaUniString& target, const UaUniString& link) override;
    bool mkdir(const UaUniString& path) override;
    bool rmdir(const UaUniString& path) override;
    /// False.
    [[nodiscard]] bool isSequential() const override;
    [[nodiscard]] bool isRelativePath(const UaUniString& path) const override;
    bool setCurrent(const UaUniString& path) override;
    bool createFile(const UaUniString& directory, const UaUniString& name) override;
    [[nodiscard]] bool exists(const UaUniString& path) const override;
    /// For reading, what isn't a regular file is refused: a pipe or a device might keep the caller
    /// waiting for ever.
    [[nodiscard]] std::FILE* fopen(const UaUniString& path, const char* mode) override;
    OpcUa_Int64 fwrite(const void* buffer, OpcUa_Int64 size, OpcUa_Int64 count,
                       std::FILE* stream) override;
    OpcUa_Int64 fread(void* buffer, OpcUa_Int64 size, OpcUa_Int64 count,
                      std::FILE* stream) override;
    bool fclose(std::FILE* stream) override;
    /// -1 also for what isn't a regular file.
    [[nodiscard]] OpcUa_Int64 fileSize(const UaUniString& path) const override;
    [[nodiscard]] UaUniString canonicalPath(const UaUniString& path) const override;
    [[nodiscard]] UaUniStringList entryList(const UaUniString& path, OpcUa_UInt32 filters,
                                            OpcUa_UInt32 sort) const override;
    [[nodiscard]] OpcUa_UInt16 count(const UaUniString& path) const override;
    [[nodiscard]] UaUniString homePath() const override;
    [[nodiscard]] UaUniString rootPath() const override;
    [[nodiscard]] UaUniString tempPath() const override;
};
