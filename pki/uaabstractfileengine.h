#pragma once

#include "base/uaunistring.h"
#include "base/uaunistringlist.h"
#include "platform/types.h"

#include <cstdio>

/// All access to files, behind one object that an embedding program may replace by its own storage.
/// Results tell success and failure alone; causes go to the trace. Operations are called from whatever
/// thread uses the PKI objects, so an engine with state of its own guards it.
///
/// The order of the operations is settled: hosts derive from this class.
class UaAbstractFileEngine
{
public:
    /// What entryList leaves out. Directories and Files stand for one kind alone; both, like neither,
    /// stand for both.
    static constexpr OpcUa_UInt32 FilterDirectories = 1;
    static constexpr OpcUa_UInt32 FilterFiles = 2;
    static constexpr OpcUa_UInt32 FilterNoDotEntries = 16; ///< Without "." and "..".
    static constexpr OpcUa_UInt32 FilterHideReadOnly =
        64; ///< Without what its owner may not write.

    static constexpr OpcUa_UInt32 SortNone = 0;
    static constexpr OpcUa_UInt32 SortByName = 1; ///< In the order of UaUniString.

    UaAbstractFileEngine() = default;
    UaAbstractFileEngine(const UaAbstractFileEngine&) = delete;
    UaAbstractFileEngine& operator=(const UaAbstractFileEngine&) = delete;
    virtual ~UaAbstractFileEngine();

    /// Removes a file.
    virtual bool remove(const UaUniString& path) = 0;
    /// Copies a file over whatever file has the target's name.
    virtual bool copy(const UaUniString& from, const UaUniString& to) = 0;
    /// Renames or moves a file or directory; false when the new name is taken.
    virtual bool rename(const UaUniString& from, const UaUniString& to) = 0;
    /// Makes `link` a further name of the file `target`.
    virtual bool link(const UaUniString& target, const UaUniString& link) = 0;
    /// Makes one directory, whose parent must exist.
    virtual bool mkdir(const UaUniString& path) = 0;
    /// Removes an empty directory.
    virtual bool rmdir(const UaUniString& path) = 0;
    /// Whether files can be read from front to back alone.
    [[nodiscard]] virtual bool isSequential() const = 0;
    [[nodiscard]] virtual bool isRelativePath(const UaUniString& path) const = 0;
    /// Makes a directory the one from which relative paths begin.
    virtual bool setCurrent(const UaUniString& path) = 0;
    /// Makes an empty file in a directory; false when the name is taken.
    virtual bool createFile(const UaUniString& directory, const UaUniString& name) = 0;
    [[nodiscard]] virtual bool exists(const UaUniString& path) const = 0;

    /// Opens a file in a mode of the C library, for the stream operations below alone; null on failure.
    /// The caller closes it with fclose.
    [[nodiscard]] virtual std::FILE* fopen(const UaUniString& path, const char* mode) = 0;
    /// Writes elements and returns how many were written whole.
    virtual OpcUa_Int64 fwrite(const void* buffer, OpcUa_Int64 size, OpcUa_Int64 count,
                               std::FILE* stream) = 0;
    /// Reads elements and returns how many were read whole.
    virtual OpcUa_Int64 fread(void* buffer, OpcUa_Int64 size, OpcUa_Int64 count,
                              std::FILE* stream) = 0;
    /// False when what was written didn't arrive.
    virtual bool fclose(std::FILE* stream) = 0;
    /// Bytes of a file; -1 when it can't be opened.
    [[nodiscard]] virtual OpcUa_Int64 fileSize(const UaUniString& path) const = 0;

    /// The absolute path without "." and ".."; empty on failure. Nothing needs to exist there.
    [[nodiscard]] virtual UaUniString canonicalPath(const UaUniString& path) const = 0;
    /// Full paths of a directory's entries: the path as given, "/" and the name. `filters` are the flags
    /// above; `sort` is one of the values above, any other leaves the list unsorted. Empty on failure.
    [[nodiscard]] virtual UaUniStringList entryList(const UaUniString& path, OpcUa_UInt32 filters,
                                                    OpcUa_UInt32 sort) const = 0;
    /// How many entries a directory has, "." and ".." included, as the low 16 bits of the number; 0 on
    /// failure.
    [[nodiscard]] virtual OpcUa_UInt16 count(const UaUniString& path) const = 0;

    [[nodiscard]] virtual UaUniString homePath() const = 0; ///< The user's home directory.
    [[nodiscard]] virtual UaUniString rootPath() const = 0; ///< The root of the file system.
    [[nodiscard]] virtual UaUniString tempPath() const = 0; ///< For temporary files.
};

/// The engine that everything uses: a UaFileEngine, made at the first call and never destroyed, or
/// what uaSetFileEngine has put in its place.
[[nodiscard]] UaAbstractFileEngine& uaFileEngine() noexcept;

/// Puts an engine in place, which must outlive its use; null brings the first one back. Returns what
/// was set before, null for none. Belongs to the start of a program, before threads use files.
UaAbstractFileEngine* uaSetFileEngine(UaAbstractFileEngine* pEngine) noexcept;
