#include "tests/pki/memoryfileengine.h"

#include <cstring>
#include <utility>

namespace {

std::string keyOf(const UaUniString& path)
{
    return path.toUaString().toUtf8();
}

} // namespace

MemoryFileEngine::MemoryFileEngine()
    : m_pBefore(uaSetFileEngine(this))
{
}

MemoryFileEngine::~MemoryFileEngine()
{
    uaSetFileEngine(m_pBefore);
}

bool MemoryFileEngine::remove(const UaUniString& path)
{
    return files.erase(keyOf(path)) == 1;
}

bool MemoryFileEngine::copy(const UaUniString& from, const UaUniString& to)
{
    const auto file = files.find(keyOf(from));
    if (file == files.end()) {
        return false;
    }
    const std::string bytes = file->second;
    files[keyOf(to)] = bytes;
    return true;
}

bool MemoryFileEngine::rename(const UaUniString& from, const UaUniString& to)
{
    return !exists(to) && copy(from, to) && remove(from);
}

bool MemoryFileEngine::link(const UaUniString& /*target*/, const UaUniString& /*link*/)
{
    return false; // there are no second names here
}

bool MemoryFileEngine::mkdir(const UaUniString& path)
{
    return !exists(path) && files.try_emplace(keyOf(path)).second;
}

bool MemoryFileEngine::rmdir(const UaUniString& path)
{
    return remove(path);
}

bool MemoryFileEngine::isRelativePath(const UaUniString& path) const
{
    return path.at(0) != u'/';
}

bool MemoryFileEngine::setCurrent(const UaUniString& path)
{
    return exists(path);
}

bool MemoryFileEngine::createFile(const UaUniString& directory, const UaUniString& name)
{
    return mkdir(directory + UaUniString(u"/") + name);
}

bool MemoryFileEngine::exists(const UaUniString& path) const
{
    return files.count(keyOf(path)) == 1;
}

std::FILE* MemoryFileEngine::fopen(const UaUniString& path, const char* mode)
{
    calls.push_back(std::string(mode) + " " + keyOf(path));
    const bool isForWriting = mode[0] == 'w';
    const auto file = files.find(keyOf(path));
    if (!isForWriting && file == files.end()) {
        return nullptr;
    }
    std::FILE* const stream = std::tmpfile();
    if (stream == nullptr) {
        return nullptr;
    }
    if (!isForWriting) {
        std::fwrite(file->second.data(), 1, file->second.size(), stream);
        std::rewind(stream);
    }
    m_streams[stream] = {keyOf(path), isForWriting};
    return stream;
}

OpcUa_Int64 MemoryFileEngine::fwrite(const void* buffer, OpcUa_Int64 size, OpcUa_Int64 count,
                                     std::FILE* stream)
{
    const OpcUa_Int64 allowed = writeLimit < 0 ? count : std::min(count, writeLimit / size);
    return static_cast<OpcUa_Int64>(std::fwrite(buffer, static_cast<std::size_t>(size),
                                                static_cast<std::size_t>(allowed), stream));
}

OpcUa_Int64 MemoryFileEngine::fread(void* buffer, OpcUa_Int64 size, OpcUa_Int64 count,
                                    std::FILE* stream)
{
    if (failReading) {
        return -1;
    }
    return static_cast<OpcUa_Int64>(std::fread(buffer, static_cast<std::size_t>(size),
                                               static_cast<std::size_t>(count), stream));
}

bool MemoryFileEngine::fclose(std::FILE* stream)
{
    const auto found = m_streams.find(stream);
    if (found == m_streams.end()) {
        return false;
    }
    if (found->second.isForWriting && !failClosing) {
        std::string bytes(static_cast<std::size_t>(std::ftell(stream)), '\0');
        std::rewind(stream);
        bytes.resize(std::fread(bytes.data(), 1, bytes.size(), stream));
        files[found->second.name] = bytes;
    }
    m_streams.erase(found);
    std::fclose(stream);
    return !failClosing;
}

OpcUa_Int64 MemoryFileEngine::fileSize(const UaUniString& path) const
{
    const auto file = files.find(keyOf(path));
    return file == files.end() ? -1 : static_cast<OpcUa_Int64>(file->second.size());
}

UaUniString MemoryFileEngine::canonicalPath(const UaUniString& path) const
{
    return path;
}

UaUniStringList MemoryFileEngine::entryList(const UaUniString& /*path*/, OpcUa_UInt32 /*filters*/,
                                            OpcUa_UInt32 /*sort*/) const
{
    UaUniStringList list;
    for (const auto& file : files) {
        list.append(UaUniString(file.first.c_str()));
    }
    return list;
}

OpcUa_UInt16 MemoryFileEngine::count(const UaUniString& /*path*/) const
{
    return static_cast<OpcUa_UInt16>(files.size());
}
