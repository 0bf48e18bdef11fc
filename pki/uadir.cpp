#include "pki/uadir.h"

#include "platform/trace.h"

#include <utility>

UaDir::UaDir(const UaUniString& path) noexcept
    : m_path(path.isEmpty() ? UaUniString(u".") : path)
{
}

UaUniString UaDir::canonicalPath(const UaUniString& path)
{
    return uaFileEngine().canonicalPath(path);
}

UaUniString UaDir::homePath()
{
    return uaFileEngine().homePath();
}

UaUniString UaDir::rootPath()
{
    return uaFileEngine().rootPath();
}

UaUniString UaDir::tempPath()
{
    return uaFileEngine().tempPath();
}

UaUniString UaDir::fromNativeSeparators(const UaUniString& path)
{
    return path.replaced(u'\\', u'/');
}

UaUniString UaDir::toNativeSeparators(const UaUniString& path)
{
    return path.replaced(u'/', u'\\');
}

bool UaDir::mkdir(const UaUniString& path) const
{
    return uaFileEngine().mkdir(path);
}

bool UaDir::rmdir(const UaUniString& path) const
{
    return uaFileEngine().rmdir(path);
}

bool UaDir::remove(const UaUniString& path) const
{
    return uaFileEngine().remove(path);
}

bool UaDir::rename(const UaUniString& from, const UaUniString& to) const
{
    return uaFileEngine().rename(from, to);
}

bool UaDir::copy(const UaUniString& from, const UaUniString& to) const
{
    return uaFileEngine().copy(from, to);
}

bool UaDir::mkpath(const UaUniString& path) const
{
    if (path.isEmpty()) {
        OpcUa_Trace(OpcUa_TraceLevel_Error, "UaDir::mkpath: Empty or null file name(s)!\n");
        return false;
    }
    UaAbstractFileEngine& engine = uaFileEngine();
    if (engine.exists(path)) {
        OpcUa_Trace(OpcUa_TraceLevel_System, "UaDir::mkpath: Path already exists!\n");
        return true;
    }
    UaUniString built(path.at(0) == u'/' ? u"/" : u"");
    bool isMade = true;
    for (const UaUniString& part : path.split(u'/')) {
        if (part.isEmpty()) {
            continue; // between two separators there is nothing to make
        }
        built += part + UaUniString(u"/");
        if (!engine.exists(built)) {
            isMade = engine.mkdir(built);
        }
    }
    return isMade;
}

bool UaDir::rmpath(const UaUniString& path) const
{
    if (path.isEmpty()) {
        OpcUa_Trace(OpcUa_TraceLevel_Error, "UaDir::rmpath: Empty or null file name(s)!\n");
        return false;
    }
    UaAbstractFileEngine& engine = uaFileEngine();
    if (!engine.exists(path)) {
        OpcUa_Trace(OpcUa_TraceLevel_Error, "UaDir::rmpath: Specified file path does not exist!\n");
        return false;
    }
    UaUniStringList parts = path.split(u'/');
    while (!parts.isEmpty() && engine.rmdir(parts.join(u'/'))) {
        parts.removeLast();
    }
    return true;
}

bool UaDir::exists() const
{
    return uaFileEngine().exists(m_path);
}

bool UaDir::exists(const UaUniString& name) const
{
    return uaFileEngine().exists(exists() ? m_path + UaUniString(u"/") + name : name);
}

bool UaDir::cd(const UaUniString& path)
{
    // A relative path means something else after the change.
    UaUniString canonical = canonicalPath(path);
    if (!uaFileEngine().setCurrent(path)) {
        return false;
    }
    if (canonical.isEmpty()) {
        m_path = path;
    } else {
        m_path = std::move(canonical);
    }
    return true;
}

bool UaDir::isRelativePath(const UaUniString& path) const
{
    return uaFileEngine().isRelativePath(path);
}

UaUniStringList UaDir::entryList(OpcUa_UInt32 filters, OpcUa_UInt32 sort) const
{
    return uaFileEngine().entryList(m_path, filters, sort);
}

OpcUa_UInt16 UaDir::count() const
{
    return uaFileEngine().count(m_path);
}

OpcUa_UInt32 UaDir::countRecursive() const
{
    constexpr OpcUa_UInt32 filters =
        UaAbstractFileEngine::FilterDirectories | UaAbstractFileEngine::FilterNoDotEntries;
    OpcUa_UInt32 found = 0;
    UaUniStringList open;
    open.append(m_path);
    while (!open.isEmpty() && found < LargestCount) {
        const UaUniString path = open.at(open.size() - 1);
        open.removeLast();
        for (const UaUniString& entry :
             uaFileEngine().entryList(path, filters, UaAbstractFileEngine::SortNone)) {
            ++found;
            open.append(entry);
        }
    }
    return found < LargestCount ? found : LargestCount;
}
