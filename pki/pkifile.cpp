#include "pki/pkifile.h"

#include "base/uaunistring.h"
#include "pki/opensslhandles.h"
#include "pki/uaabstractfileengine.h"
#include "pki/uapkierrorlist.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

namespace {

constexpr OpcUa_Int64 firstBlock = 8 * 1024;
constexpr const char* cantOpenForReading = "Could not open file for reading";
constexpr const char* cantOpenForWriting = "Could not open file for writing";
constexpr const char* cantRead = "Could not read file";
constexpr const char* isTooLarge = "The file is too large";

/// Reads to the end: `readSome(data, size)` gives bytes read, 0 at the end, less on failure. One byte
/// more than `expected` is asked for, so that a file of that size is read in one go.
template <typename ReadSome>
std::optional<PkiBytes> readAll(OpcUa_Int64 expected, OpcUa_Int64 limit,
                                const UaPkiErrorList& errors, ReadSome readSome)
{
    PkiBytes bytes;
    OpcUa_Int64 room = std::clamp(expected, OpcUa_Int64{0}, limit) + 1;
    for (;;) {
        if (!bytes.reserve(static_cast<std::size_t>(room))) {
            errors.addError(cantRead);
            return std::nullopt;
        }
        const auto size = static_cast<OpcUa_Int64>(bytes.size());
        const OpcUa_Int64 read = readSome(bytes.data() + size, room - size);
        if (read < 0 || read > room - size) {
            errors.addError(cantRead);
            return std::nullopt;
        }
        if (read == 0) {
            return bytes;
        }
        bytes.setSize(static_cast<std::size_t>(size + read));
        if (size + read > limit) {
            errors.addError(isTooLarge);
            return std::nullopt;
        }
        if (size + read == room) {
            room = std::min(std::max(room * 2, firstBlock), limit + 1);
        }
    }
}

std::optional<PkiBytes> readThroughEngine(const UaUniString& path, const char* mode,
                                          OpcUa_Int64 expected, OpcUa_Int64 limit,
                                          const UaPkiErrorList& errors)
{
    UaAbstractFileEngine& engine = uaFileEngine();
    std::FILE* const stream = engine.fopen(path, mode);
    if (stream == nullptr) {
        errors.addError(cantOpenForReading);
        return std::nullopt;
    }
    std::setvbuf(stream, nullptr, _IONBF, 0);
    auto bytes = readAll(expected, limit, errors, [&](OpcUa_Byte* data, OpcUa_Int64 size) {
        const OpcUa_Int64 read = engine.fread(data, 1, size, stream);
        return read == 0 && std::ferror(stream) != 0 ? OpcUa_Int64{-1} : read;
    });
    engine.fclose(stream);
    return bytes;
}

/// A file BIO without a buffer of its own; null with the reason in the library's queue.
PkiHandle<BIO> openFile(const char* path, bool isForWriting)
{
    PkiHandle<BIO> bio(BIO_new(BIO_s_file()));
    // The control takes its name as a pointer to changeable text, but only reads it.
    const long mode = BIO_CLOSE | (isForWriting ? BIO_FP_WRITE : BIO_FP_READ);
    if (bio == nullptr ||
        BIO_ctrl(bio.get(), BIO_C_SET_FILENAME, mode, const_cast<char*>(path)) <= 0) {
        return nullptr;
    }
    std::FILE* stream = nullptr;
    if (BIO_get_fp(bio.get(), &stream) > 0 && stream != nullptr) {
        std::setvbuf(stream, nullptr, _IONBF, 0);
    }
    return bio;
}

/// Whether something is there that may not be waited for, such as a pipe; and a file's size, -1
/// without one.
std::pair<bool, OpcUa_Int64> lookAt(const char* path) noexcept
{
    try {
        std::error_code error;
        const std::filesystem::path file(path);
        const auto status = std::filesystem::status(file, error);
        const bool isOther =
            std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
        const auto size = std::filesystem::file_size(file, error);
        return {isOther, error ? -1 : static_cast<OpcUa_Int64>(size)};
    } catch (const std::bad_alloc&) {
        return {true, -1};
    }
}

} // namespace

std::optional<PkiBytes> PkiFile_Read(const UaUniString& path, const char* mode, OpcUa_Int64 limit,
                                     const UaPkiErrorList& errors)
{
    return readThroughEngine(path, mode, firstBlock - 1, limit, errors);
}

std::optional<PkiBytes> PkiFile_ReadSized(const UaUniString& path, const char* mode,
                                          OpcUa_Int64 limit, const UaPkiErrorList& errors)
{
    const OpcUa_Int64 size = uaFileEngine().fileSize(path);
    if (size < 0) {
        errors.addError("Could not get file size");
        return std::nullopt;
    }
    if (size > limit) {
        errors.addError(isTooLarge);
        return std::nullopt;
    }
    return readThroughEngine(path, mode, size, limit, errors);
}

std::optional<PkiBytes> PkiFile_Read(const char* path, OpcUa_Int64 limit,
                                     const UaPkiErrorList& errors)
{
    if (path == nullptr) {
        errors.addError(cantOpenForReading);
        return std::nullopt;
    }
    const auto [isOther, size] = lookAt(path);
    if (isOther) {
        errors.addError(cantOpenForReading);
        return std::nullopt;
    }
    if (size > limit) {
        errors.addError(isTooLarge);
        return std::nullopt;
    }
    const PkiHandle<BIO> bio = openFile(path, false);
    if (bio == nullptr) {
        errors.addLibraryErrors();
        return std::nullopt;
    }
    return readAll(size, limit, errors, [&](OpcUa_Byte* data, OpcUa_Int64 room) {
        constexpr OpcUa_Int64 largestBlock = 0x10000000;
        return OpcUa_Int64{
            BIO_read(bio.get(), data, static_cast<int>(std::min(room, largestBlock)))};
    });
}

void PkiFile_RaiseError() noexcept
{
    if (errno != 0) {
        ERR_raise(ERR_LIB_SYS, errno);
    }
    ERR_raise(ERR_LIB_BIO, ERR_R_SYS_LIB);
}

PkiFileStatus PkiFile_TryWrite(const UaUniString& path, const char* mode, const void* bytes,
                               std::size_t size, const UaPkiErrorList& errors)
{
    UaAbstractFileEngine& engine = uaFileEngine();
    std::FILE* const stream = engine.fopen(path, mode);
    if (stream == nullptr) {
        return PkiFileStatus::NotOpened;
    }
    const auto count = static_cast<OpcUa_Int64>(size);
    const bool isWritten = engine.fwrite(bytes, 1, count, stream) == count;
    const bool isClosed = engine.fclose(stream);
    if (!isWritten || !isClosed) {
        errors.addError("Could not write file");
        return PkiFileStatus::NotWritten;
    }
    return PkiFileStatus::Good;
}

bool PkiFile_Write(const UaUniString& path, const char* mode, const void* bytes, std::size_t size,
                   const UaPkiErrorList& errors)
{
    const PkiFileStatus status = PkiFile_TryWrite(path, mode, bytes, size, errors);
    if (status == PkiFileStatus::NotOpened) {
        errors.addError(cantOpenForWriting);
    }
    return status == PkiFileStatus::Good;
}

PkiFileStatus PkiFile_TryWrite(const char* path, const void* bytes, std::size_t size,
                               const UaPkiErrorList& errors)
{
    const PkiHandle<BIO> bio = path != nullptr ? openFile(path, true) : nullptr;
    std::size_t written = 0;
    if (bio == nullptr) {
        return PkiFileStatus::NotOpened;
    }
    // Without a buffer nothing is left for the close to write.
    errno = 0;
    if (size > 0 && (BIO_write_ex(bio.get(), bytes, size, &written) != 1 || written != size)) {
        PkiFile_RaiseError();
        errors.addLibraryErrors();
        return PkiFileStatus::NotWritten;
    }
    return PkiFileStatus::Good;
}

bool PkiFile_Write(const char* path, const void* bytes, std::size_t size,
                   const UaPkiErrorList& errors)
{
    if (path == nullptr) {
        errors.addError(cantOpenForWriting);
        return false;
    }
    const PkiFileStatus status = PkiFile_TryWrite(path, bytes, size, errors);
    errors.addLibraryErrors();
    return status == PkiFileStatus::Good;
}
