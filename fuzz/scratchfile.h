#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

/// A file for the input of a fuzz target, removed at the end of the process.
class ScratchFile
{
public:
    ScratchFile()
        : m_path((std::filesystem::temp_directory_path() /
                  ("fuzzer_" + std::to_string(std::random_device()())))
                     .string())
    {
    }
    ~ScratchFile()
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    /// Writes the bytes and returns the path.
    const char* write(const std::uint8_t* data, std::size_t size) const
    {
        std::ofstream file(m_path, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        return m_path.c_str();
    }

private:
    std::string m_path;
};
