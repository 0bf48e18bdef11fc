#include "pki/uafile.h"

#include "pki/uaabstractfileengine.h"

#include <utility>

UaFile::UaFile(UaUniString path) noexcept
    : m_path(std::move(path))
{
}

UaFile::UaFile(UaFile&& other) noexcept
    : m_path(std::move(other.m_path))
    , m_pStream(std::exchange(other.m_pStream, nullptr))
{
}

UaFile& UaFile::operator=(UaFile&& other) noexcept
{
    UaFile taken(std::move(other));
    m_path.swap(taken.m_path);
    std::swap(m_pStream, taken.m_pStream);
    return *this;
}

UaFile::~UaFile()
{
    close();
}

bool UaFile::exists() const
{
    return uaFileEngine().exists(m_path);
}

OpcUa_Int64 UaFile::size() const
{
    return uaFileEngine().fileSize(m_path);
}

bool UaFile::open(const char* mode)
{
    close();
    m_pStream = uaFileEngine().fopen(m_path, mode);
    return isOpen();
}

OpcUa_Int64 UaFile::read(void* buffer, OpcUa_Int64 size)
{
    return isOpen() ? uaFileEngine().fread(buffer, 1, size, m_pStream) : 0;
}

OpcUa_Int64 UaFile::write(const void* buffer, OpcUa_Int64 size)
{
    return isOpen() ? uaFileEngine().fwrite(buffer, 1, size, m_pStream) : 0;
}

bool UaFile::close()
{
    return isOpen() && uaFileEngine().fclose(std::exchange(m_pStream, nullptr));
}
