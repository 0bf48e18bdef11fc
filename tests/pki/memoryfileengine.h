#pragma once

#include "pki/uaabstractfileengine.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

/// A file engine whose files live in memory, as an embedding program might write one: names are plain
/// keys, there is one flat directory, and streams are the system's temporary files, whose bytes come
/// back at fclose. It is in place while it lives.
class MemoryFileEngine final : public UaAbstractFileEngine
{
public:
    MemoryFileEngine();
    ~MemoryFileEngine() override;

    /// The files, by name.
    std::map<std::string, std::string> files;
    /// Every call of fopen, in their order, as the mode, a blank and the name.
    std::vector<std::string> calls;
    /// Streams that were opened and not closed yet.
    [[nodiscard]] std::size_t openStreams() const { return m_streams.size(); }

    /// Faults for the next stream: writes that stop after so many bytes, a read that fails, a close
    /// that fails.
    OpcUa_Int64 writeLimit = -1;
    bool failReading = false;
    bool failClosing = false;

    bool remove(const UaUniString& path) override;
    bool copy(const UaUniString& from, const UaUniString& to) override;
    bool rename(const UaUniString& from, const UaUniString& to) override;
    bool link(const UaUniString& target, const UaUniString& link) override;
    bool mkdir(const UaUniString& path) override;
    bool rmdir(const UaUniString& path) override;
    [[nodiscard]] bool isSequential() const override { return false; }
    [[nodiscard]] bool isRelativePath(const UaUniString& path) const override;
    bool setCurrent(const UaUniString& path) override;
    bool createFile(const UaUniString& directory, const UaUniString& name) override;
    [[nodiscard]] bool exists(const UaUniString& path) const override;
    [[nodiscard]] std::FILE* fopen(const UaUniString& path, const char* mode) override;
    OpcUa_Int64 fwrite(const void* buffer, OpcUa_Int64 size, OpcUa_Int64 count,
                       std::FILE* stream) override;
    OpcUa_Int64 fread(void* buffer, OpcUa_Int64 size, OpcUa_Int64 count,
                      std::FILE* stream) override;
    bool fclose(std::FILE* stream) override;
    [[nodiscard]] OpcUa_Int64 fileSize(const UaUniString& path) const override;
    [[nodiscard]] UaUniString canonicalPath(const UaUniString& path) const override;
    [[nodiscard]] UaUniStringList entryList(const UaUniString& path, OpcUa_UInt32 filters,
                                            OpcUa_UInt32 sort) const override;
    [[nodiscard]] OpcUa_UInt16 count(const UaUniString& path) const override;
    [[nodiscard]] UaUniString homePath() const override { return u"/home"; }
    [[nodiscard]] UaUniString rootPath() const override { return u"/"; }
    [[nodiscard]] UaUniString tempPath() const override { return u"/temp"; }

private:
    struct Stream
    {
        std::string name;
        bool isForWriting = false;
    };

    std::map<std::FILE*, Stream> m_streams;
    UaAbstractFileEngine* m_pBefore;
};
