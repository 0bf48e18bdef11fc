#include "pki/uafileengine.h"

#include <limits>

// What the C library does alike on every system.

namespace {

/// Whether a block of so many elements can exist.
bool isBlock(OpcUa_Int64 size, OpcUa_Int64 count)
{
    return size > 0 && count > 0 && count <= std::numeric_limits<OpcUa_Int64>::max() / size;
}

} // namespace

bool UaFileEngine::isSequential() const
{
    return false;
}

OpcUa_Int64 UaFileEngine::fwrite(const void* buffer, OpcUa_Int64 size, OpcUa_Int64 count,
                                 std::FILE* stream)
{
    if (buffer == nullptr || stream == nullptr || !isBlock(size, count)) {
        return 0;
    }
    return static_cast<OpcUa_Int64>(std::fwrite(buffer, static_cast<std::size_t>(size),
                                                static_cast<std::size_t>(count), stream));
}

OpcUa_Int64 UaFileEngine::fread(void* buffer, OpcUa_Int64 size, OpcUa_Int64 count,
                                std::FILE* stream)
{
    if (buffer == nullptr || stream == nullptr || !isBlock(size, count)) {
        return 0;
    }
    return static_cast<OpcUa_Int64>(std::fread(buffer, static_cast<std::size_t>(size),
                                               static_cast<std::size_t>(count), stream));
}

bool UaFileEngine::fclose(std::FILE* stream)
{
    return stream != nullptr && std::fclose(stream) == 0;
}
