#include "pki/nativepath_posix.h"
#include "pki/uafileengine.h"
#include "platform/trace.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// Copying and renaming.

namespace {

/// A file descriptor that is closed with the object.
class File
{
public:
    explicit File(int file) noexcept
        : m_file(file)
    {
    }
    ~File() { close(); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    [[nodiscard]] int get() const noexcept { return m_file; }
    bool close() noexcept
    {
        const bool isClosed = m_file >= 0 && ::close(m_file) == 0;
        m_file = -1;
        return isClosed;
    }

private:
    int m_file;
};

using Path = std::array<char, PATH_MAX>;

/// Where a copy goes, and what is there now.
struct Target
{
    Path path{};
    bool exists = false;
    struct stat old = {};
};

bool isFormatted(int length)
{
    return length > 0 && length < PATH_MAX;
}

/// False for a target that must not be replaced: no regular file, not writable, the source itself, or
/// a link that leads nowhere.
bool findTarget(const char* path, const struct stat& source, Target& target)
{
    if (realpath(path, target.path.data()) != nullptr) {
        target.exists = true;
        return stat(target.path.data(), &target.old) == 0 && S_ISREG(target.old.st_mode) &&
               (target.old.st_dev != source.st_dev || target.old.st_ino != source.st_ino) &&
               access(target.path.data(), W_OK) == 0;
    }
    struct stat link = {};
    return errno == ENOENT && lstat(path, &link) != 0 &&
           isFormatted(std::snprintf(target.path.data(), target.path.size(), "%s", path));
}

/// A new file beside the target, open to nobody who can't read the source; -1 on failure.
int makeTemporary(const Target& target, const struct stat& source, Path& path)
{
    static std::atomic<unsigned> s_number = 0;
    constexpr int attempts = 100;
    const mode_t mode = target.exists ? S_IRUSR | S_IWUSR : source.st_mode & 0777u;
    for (int i = 0; i < attempts; ++i) {
        if (!isFormatted(std::snprintf(path.data(), path.size(), "%s.%ld.%u", target.path.data(),
                                       static_cast<long>(getpid()), s_number++))) {
            return -1;
        }
        const int file = open(path.data(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (file >= 0 || errno != EEXIST) {
            return file;
        }
    }
    return -1;
}

bool writeAll(int file, const char* bytes, ssize_t size)
{
    while (size > 0) {
        const ssize_t written = write(file, bytes, static_cast<std::size_t>(size));
        if (written < 0 && errno != EINTR) {
            return false;
        }
        if (written > 0) {
            bytes += written;
            size -= written;
        }
    }
    return true;
}

bool copyBytes(int from, int to)
{
    std::array<char, 32 * 1024> block;
    for (;;) {
        const ssize_t size = read(from, block.data(), block.size());
        if (size == 0) {
            return true;
        }
        if ((size < 0 && errno != EINTR) || !writeAll(to, block.data(), size)) {
            return false;
        }
    }
}

/// Gives the new file what was settled about the old one. The mode comes last, since a change of the
/// owner takes some of its bits away.
bool takeOver(int file, const struct stat& old)
{
    const bool isOwnerKept = fchown(file, old.st_uid, old.st_gid) == 0;
    // Another owner's file must not become open to a group that isn't the old one.
    return fchmod(file, isOwnerKept ? old.st_mode & 07777u : S_IRUSR | S_IWUSR) == 0;
}

bool copyFile(const char* from, const char* to)
{
    File source(open(from, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat state = {};
    Target target;
    Path path{};
    if (source.get() < 0 || fstat(source.get(), &state) != 0 || !S_ISREG(state.st_mode) ||
        !findTarget(to, state, target)) {
        return false;
    }
    File copy(makeTemporary(target, state, path));
    if (copy.get() < 0) {
        return false;
    }
    const bool isCopied =
        copyBytes(source.get(), copy.get()) && (!target.exists || takeOver(copy.get(), target.old));
    if (!copy.close() || !isCopied || std::rename(path.data(), target.path.data()) != 0) {
        unlink(path.data());
        return false;
    }
    return true;
}

} // namespace

bool UaFileEngine::copy(const UaUniString& from, const UaUniString& to)
{
    const int errorBefore = errno;
    const bool isCopied = copyFile(NativePath(from).c_str(), NativePath(to).c_str());
    if (!isCopied) {
        OpcUa_Trace(OpcUa_TraceLevel_Error,
                    "UaFileEngine::copy: Could not write into the ini file!\n");
        // The code from before the copy, for what it's worth: this line is known in this form.
        OpcUa_Trace(OpcUa_TraceLevel_Error, "Error code: %d\n", errorBefore);
    }
    return isCopied;
}

bool UaFileEngine::rename(const UaUniString& from, const UaUniString& to)
{
    const NativePath source(from);
    const NativePath target(to);
    if (renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    // Not all file systems know how to do it in one step.
    struct stat state = {};
    return (errno == EINVAL || errno == ENOSYS) && lstat(target.c_str(), &state) != 0 &&
           std::rename(source.c_str(), target.c_str()) == 0;
}
