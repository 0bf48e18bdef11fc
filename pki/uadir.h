#pragma once

#include "base/uaunistring.h"
#include "base/uaunistringlist.h"
#include "pki/uaabstractfileengine.h"
#include "platform/types.h"

/// A directory, by its path. All operations go through the one file engine and take paths as the
/// engine does, not below this directory, unless told otherwise.
class UaDir
{
public:
    /// An empty path stands for ".".
    explicit UaDir(const UaUniString& path) noexcept;

    [[nodiscard]] const UaUniString& path() const noexcept { return m_path; }

    [[nodiscard]] static UaUniString canonicalPath(const UaUniString& path);
    [[nodiscard]] static UaUniString homePath();
    [[nodiscard]] static UaUniString rootPath();
    [[nodiscard]] static UaUniString tempPath();
    /// Every backslash replaced by "/", on every system.
    [[nodiscard]] static UaUniString fromNativeSeparators(const UaUniString& path);
    /// Every "/" replaced by a backslash, on every system.
    [[nodiscard]] static UaUniString toNativeSeparators(const UaUniString& path);

    bool mkdir(const UaUniString& path) const;
    bool rmdir(const UaUniString& path) const;
    bool remove(const UaUniString& path) const;
    bool rename(const UaUniString& from, const UaUniString& to) const;
    bool copy(const UaUniString& from, const UaUniString& to) const;

    /// Makes a directory with all those above it that are missing. True also for a path that exists;
    /// false for an empty one and when the last directory couldn't be made.
    bool mkpath(const UaUniString& path) const;
    /// Removes a directory, then those above it as long as they are empty. False for an empty path and
    /// for one that doesn't exist; otherwise true, whatever could be removed.
    bool rmpath(const UaUniString& path) const;

    /// Whether this directory exists.
    [[nodiscard]] bool exists() const;
    /// Whether there is something of this name in this directory; the name counts as a path of its own
    /// when this directory doesn't exist.
    [[nodiscard]] bool exists(const UaUniString& name) const;

    /// Makes a directory this object's one, by its canonical path, and the process' current one; on
    /// failure nothing changes.
    bool cd(const UaUniString& path);
    [[nodiscard]] bool isRelativePath(const UaUniString& path) const;

    /// This directory's entries, see UaAbstractFileEngine::entryList.
    [[nodiscard]] UaUniStringList
    entryList(OpcUa_UInt32 filters, OpcUa_UInt32 sort = UaAbstractFileEngine::SortNone) const;
    /// This directory's entries, "." and ".." included.
    [[nodiscard]] OpcUa_UInt16 count() const;
    /// How many directories lie below this one at any depth, up to LargestCount: links to directories
    /// count and are followed, so that a circle of them has to end somewhere.
    [[nodiscard]] OpcUa_UInt32 countRecursive() const;
    static constexpr OpcUa_UInt32 LargestCount = 1'000'000;

private:
    UaUniString m_path;
};
