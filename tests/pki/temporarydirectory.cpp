#include "tests/pki/temporarydirectory.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

TemporaryDirectory::TemporaryDirectory()
{
    std::random_device random;
    do {
        m_path = (std::filesystem::temp_directory_path() / ("pki_test_" + std::to_string(random())))
                     .string();
    } while (!std::filesystem::create_directory(m_path));
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

void writeBytes(const std::string& path, const std::string& bytes)
{
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        std::perror(path.c_str());
        std::abort();
    }
}

std::string readBytes(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string outputOf(const std::string& command)
{
    std::FILE* const pipe = popen((command + " 2>&1; echo \"exit $?\"").c_str(), "r");
    if (pipe == nullptr) {
        return {};
    }
    std::string output;
    std::array<char, 4096> block{};
    for (std::size_t size = 1; size > 0;) {
        size = std::fread(block.data(), 1, block.size(), pipe);
        output.append(block.data(), size);
    }
    pclose(pipe);
    return output;
}
