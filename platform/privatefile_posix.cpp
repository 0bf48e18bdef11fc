#include "platform/privatefile.h"
#include "platform/status.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Path = std::array<char, PATH_MAX>;

/// Where the file really is, and what is there now.
struct Target
{
    Path path{};
    bool exists = false;
    struct stat old = {};
};

/// False for a target that must not be replaced.
bool findTarget(const char* path, Target& target)
{
    if (realpath(path, target.path.data()) != nullptr) {
        target.exists = true;
        return stat(target.path.data(), &target.old) == 0 && S_ISREG(target.old.st_mode) &&
               access(target.path.data(), W_OK) == 0;
    }
    const bool isMissing = errno == ENOENT;
    const int length = std::snprintf(target.path.data(), target.path.size(), "%s", path);
    struct stat link = {};
    // A link that leads nowhere would be replaced by the file.
    return isMissing && static_cast<std::size_t>(length) < target.path.size() &&
           lstat(path, &link) != 0;
}

bool writeAll(int file, const void* bytes, std::size_t size)
{
    const auto* const begin = static_cast<const char*>(bytes);
    for (std::size_t done = 0; done < size;) {
        const ssize_t written = write(file, begin + done, size - done);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        done += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
    return fsync(file) == 0;
}

/// Gives the new file what others may have settled about the old one. The mode comes last, since a
/// change of the owner takes some of its bits away.
bool takeOver(int file, const struct stat& old)
{
    const bool isOwnerKept = fchown(file, old.st_uid, old.st_gid) == 0;
    // Another owner's file must not become open to a group that isn't the old one.
    const mode_t mode = isOwnerKept ? old.st_mode & 07777u : S_IRUSR | S_IWUSR;
    return fchmod(file, mode) == 0;
}

/// Writes and closes the file.
bool complete(int file, const Target& target, const void* bytes, std::size_t size)
{
    const bool isWritten =
        writeAll(file, bytes, size) && (!target.exists || takeOver(file, target.old));
    return close(file) == 0 && isWritten;
}

} // namespace

OpcUa_StatusCode OpcUa_P_PrivateFile_Write(const char* path, const void* bytes, std::size_t size)
{
    if (path == nullptr || bytes == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    Target target;
    Path temporary{};
    if (!findTarget(path, target) ||
        static_cast<std::size_t>(std::snprintf(temporary.data(), temporary.size(), "%s.XXXXXX",
                                               target.path.data())) >= temporary.size()) {
        return OpcUa_BadResourceUnavailable;
    }
    // Made with mode 0600.
    const int file = mkostemp(temporary.data(), O_CLOEXEC);
    if (file < 0) {
        return OpcUa_BadResourceUnavailable;
    }
    if (!complete(file, target, bytes, size) ||
        std::rename(temporary.data(), target.path.data()) != 0) {
        unlink(temporary.data());
        return OpcUa_BadResourceUnavailable;
    }
    return OpcUa_Good;
}
