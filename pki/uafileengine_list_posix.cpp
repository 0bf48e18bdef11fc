#include "pki/nativepath_posix.h"
#include "pki/uafileengine.h"
#include "platform/trace.h"

#include <cerrno>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

// Listing directories.

namespace {

struct DirectoryCloser
{
    void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, DirectoryCloser>;

/// An empty path is searched from the root.
Directory openDirectory(const UaUniString& path)
{
    const NativePath native(path);
    return Directory(opendir(path.isEmpty() ? "/" : native.c_str()));
}

bool isDotEntry(std::string_view name)
{
    return name == "." || name == "..";
}

/// Links count as what they lead to, and as files when they lead nowhere.
bool isDirectory(DIR* directory, const dirent& entry)
{
    if (entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN) {
        struct stat state = {};
        return fstatat(dirfd(directory), entry.d_name, &state, 0) == 0 && S_ISDIR(state.st_mode);
    }
    return entry.d_type == DT_DIR;
}

bool isReadOnly(DIR* directory, const dirent& entry)
{
    struct stat state = {};
    return fstatat(dirfd(directory), entry.d_name, &state, 0) == 0 &&
           (state.st_mode & S_IWUSR) == 0;
}

bool isKept(DIR* directory, const dirent& entry, OpcUa_UInt32 filters)
{
    constexpr OpcUa_UInt32 oneKind =
        UaAbstractFileEngine::FilterDirectories | UaAbstractFileEngine::FilterFiles;
    if ((filters & UaAbstractFileEngine::FilterNoDotEntries) != 0 && isDotEntry(entry.d_name)) {
        return false;
    }
    const OpcUa_UInt32 kind = filters & oneKind;
    if (kind == UaAbstractFileEngine::FilterDirectories ||
        kind == UaAbstractFileEngine::FilterFiles) {
        const bool isWanted = kind == UaAbstractFileEngine::FilterDirectories;
        if (isDirectory(directory, entry) != isWanted) {
            return false;
        }
    }
    return (filters & UaAbstractFileEngine::FilterHideReadOnly) == 0 ||
           !isReadOnly(directory, entry);
}

/// The numbers beyond the ones with a name were sort orders once, of which one was told twice.
void sortAs(UaUniStringList& list, OpcUa_UInt32 sort)
{
    constexpr OpcUa_UInt32 sortByTime = 2;
    constexpr OpcUa_UInt32 sortBySize = 4;
    switch (sort) {
    case UaAbstractFileEngine::SortNone:
        return;
    case UaAbstractFileEngine::SortByName:
        list.sort();
        return;
    case sortByTime:
    case sortBySize:
        OpcUa_Trace(OpcUa_TraceLevel_Error, "UaFileEngine::entryList: Unhandled sort!!!");
        [[fallthrough]];
    default:
        OpcUa_Trace(OpcUa_TraceLevel_Error, "UaFileEngine::entryList: Invalid sort!!!");
    }
}

} // namespace

UaUniStringList UaFileEngine::entryList(const UaUniString& path, OpcUa_UInt32 filters,
                                        OpcUa_UInt32 sort) const
{
    const Directory directory = openDirectory(path);
    if (directory == nullptr) {
        OpcUa_Trace(OpcUa_TraceLevel_Error,
                    "UaFileEngine::entryList: Invalid File Handle. GetLastError reports %d\n",
                    errno);
        return {};
    }
    UaUniStringList list;
    errno = 0;
    while (const dirent* const entry = readdir(directory.get())) {
        if (isKept(directory.get(), *entry, filters)) {
            UaUniString name = joinNativeName(path, entry->d_name);
            if (name.isNull() || !list.append(std::move(name))) {
                return {};
            }
        }
        errno = 0;
    }
    if (errno != 0) {
        OpcUa_Trace(OpcUa_TraceLevel_Error, "UaFileEngine::entryList: GetLastError reports %d\n",
                    errno);
    }
    sortAs(list, sort);
    return list;
}

OpcUa_UInt16 UaFileEngine::count(const UaUniString& path) const
{
    const Directory directory = openDirectory(path);
    if (directory == nullptr) {
        OpcUa_Trace(OpcUa_TraceLevel_Error,
                    "UaFileEngine::count: Invalid File Handle. GetLastError reports %d\n", errno);
        return 0;
    }
    OpcUa_UInt64 entries = 0;
    while (readdir(directory.get()) != nullptr) {
        ++entries;
    }
    return static_cast<OpcUa_UInt16>(entries);
}
