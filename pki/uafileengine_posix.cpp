#include "pki/nativepath_posix.h"
#include "pki/uafileengine.h"
#include "platform/trace.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Passes a result on; a failure is traced with the system's error.
bool report(bool isGood, const char* operation)
{
    if (!isGood) {
        OpcUa_Trace(OpcUa_TraceLevel_Error,
                    "UaFileEngine::%s: Invalid File Handle. GetLastError reports %d\n", operation,
                    errno);
    }
    return isGood;
}

/// The flags of a mode of the C library; -1 for none. "t" and "b" mean nothing here.
int openFlags(const char* mode)
{
    const bool isUpdate = std::strchr(mode, '+') != nullptr;
    switch (mode[0]) {
    case 'r':
        return isUpdate ? O_RDWR : O_RDONLY;
    case 'w':
        return (isUpdate ? O_RDWR : O_WRONLY) | O_CREAT | O_TRUNC;
    case 'a':
        return (isUpdate ? O_RDWR : O_WRONLY) | O_CREAT | O_APPEND;
    default:
        return -1;
    }
}

/// Opens without waiting for the other end of a pipe; -1 on failure, which for reading includes what
/// is no regular file.
int openFile(const char* path, int flags, struct stat& state)
{
    const int file = open(path, flags | O_NONBLOCK | O_CLOEXEC, 0666);
    if (file < 0) {
        return -1;
    }
    const bool isKnown = fstat(file, &state) == 0;
    const bool isRegular = isKnown && S_ISREG(state.st_mode);
    if (!isKnown || (!isRegular && (flags & O_CREAT) == 0)) {
        close(file);
        errno = EINVAL;
        return -1;
    }
    if (!isRegular) {
        fcntl(file, F_SETFL, flags & ~O_NONBLOCK);
    }
    return file;
}

/// Removes "." and what ".." takes back from an absolute path, and repeated separators; a separator
/// at the end stays. False when there isn't room.
bool normalize(std::string_view path, std::array<char, PATH_MAX>& text, std::size_t& length)
{
    length = 0;
    std::string_view part;
    for (std::string_view rest = path; !rest.empty();) {
        rest.remove_prefix(1); // the separator
        part = rest.substr(0, rest.find('/'));
        rest.remove_prefix(part.size());
        if (part == "..") {
            while (length > 0 && text[--length] != '/') {
            }
        } else if (!part.empty() && part != ".") {
            if (length + 1 + part.size() >= text.size()) {
                return false;
            }
            text[length++] = '/';
            length += part.copy(text.data() + length, part.size());
        }
    }
    if (length == 0 || (part.empty() && length + 1 < text.size())) {
        text[length++] = '/';
    }
    return true;
}

/// The path with the current directory before it when it is relative; 0 when that fails.
std::size_t makeAbsolute(const NativePath& path, std::array<char, PATH_MAX * 2>& text)
{
    std::size_t length = 0;
    if (path.view().front() != '/') {
        if (getcwd(text.data(), PATH_MAX) == nullptr) {
            return 0;
        }
        length = std::strlen(text.data());
        text[length++] = '/';
    }
    return length + path.view().copy(text.data() + length, PATH_MAX);
}

UaUniString absoluteOr(const char* path, const char* otherwise)
{
    return fromNativePath(path != nullptr && path[0] == '/' ? path : otherwise);
}

} // namespace

bool UaFileEngine::remove(const UaUniString& path)
{
    return report(unlink(NativePath(path).c_str()) == 0, "remove");
}

bool UaFileEngine::link(const UaUniString& target, const UaUniString& link)
{
    return ::link(NativePath(target).c_str(), NativePath(link).c_str()) == 0;
}

bool UaFileEngine::mkdir(const UaUniString& path)
{
    return report(::mkdir(NativePath(path).c_str(), 0777) == 0, "mkdir");
}

bool UaFileEngine::rmdir(const UaUniString& path)
{
    return report(::rmdir(NativePath(path).c_str()) == 0, "rmdir");
}

bool UaFileEngine::isRelativePath(const UaUniString& path) const
{
    return path.at(0) != u'/';
}

bool UaFileEngine::setCurrent(const UaUniString& path)
{
    return chdir(NativePath(path).c_str()) == 0;
}

bool UaFileEngine::createFile(const UaUniString& directory, const UaUniString& name)
{
    const NativePath path(directory + UaUniString(u"/") + name);
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    return report(file >= 0, "createFile") && close(file) == 0;
}

bool UaFileEngine::exists(const UaUniString& path) const
{
    return access(NativePath(path).c_str(), F_OK) == 0;
}

std::FILE* UaFileEngine::fopen(const UaUniString& path, const char* mode)
{
    const int flags = mode != nullptr ? openFlags(mode) : -1;
    if (flags < 0) {
        errno = EINVAL;
        return nullptr;
    }
    struct stat state = {};
    const int file = openFile(NativePath(path).c_str(), flags, state);
    if (file < 0) {
        return nullptr;
    }
    std::FILE* const stream = fdopen(file, mode);
    if (stream == nullptr) {
        close(file);
    }
    return stream;
}

OpcUa_Int64 UaFileEngine::fileSize(const UaUniString& path) const
{
    struct stat state = {};
    const int file = openFile(NativePath(path).c_str(), O_RDONLY, state);
    if (file < 0) {
        return -1;
    }
    close(file);
    return state.st_size;
}

UaUniString UaFileEngine::canonicalPath(const UaUniString& path) const
{
    const NativePath native(path);
    std::array<char, PATH_MAX * 2> absolute{};
    std::array<char, PATH_MAX> text{};
    std::size_t length = 0;
    errno = ENOENT;
    if (!native.view().empty()) {
        length = makeAbsolute(native, absolute);
    }
    if (length > 0 && !normalize({absolute.data(), length}, text, length)) {
        errno = ENAMETOOLONG;
        length = 0;
    }
    if (length == 0) {
        const int error = errno;
        OpcUa_Trace(OpcUa_TraceLevel_Error,
                    "UaFileEngine::canonicalPath: Could not canonicalize the path !!!\n");
        OpcUa_Trace(OpcUa_TraceLevel_Error, "Error code: %d\n", error);
        return {};
    }
    return fromNativePath({text.data(), length});
}

UaUniString UaFileEngine::homePath() const
{
    struct passwd entry = {};
    struct passwd* found = nullptr;
    std::array<char, 4096> buffer{};
    getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
    return absoluteOr(std::getenv("HOME"), found != nullptr ? entry.pw_dir : "/");
}

UaUniString UaFileEngine::rootPath() const
{
    return u"/";
}

UaUniString UaFileEngine::tempPath() const
{
    return absoluteOr(std::getenv("TMPDIR"), "/tmp");
}
