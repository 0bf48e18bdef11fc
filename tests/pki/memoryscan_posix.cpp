#include "tests/pki/memoryscan.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr unsigned char mask = 0x5A;
constexpr std::size_t blockSize = 1024 * 1024;
/// Larger areas are reserved by sanitizers and hold nothing of the program.
constexpr std::uint64_t largestArea = std::uint64_t{1} << 30u;

std::array<unsigned char, blockSize> s_block;

std::size_t countInArea(int memory, std::uint64_t begin, std::uint64_t end, const Needle& needle)
{
    std::size_t found = 0;
    const std::size_t overlap = needle.masked().size();
    for (std::uint64_t at = begin; at < end; at += blockSize - overlap) {
        const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(blockSize, end - at));
        const ssize_t read = pread(memory, s_block.data(), size, static_cast<off_t>(at));
        if (read > 0 && needle.isIn(s_block.data(), static_cast<std::size_t>(read))) {
            ++found;
        }
        OPENSSL_cleanse(s_block.data(), s_block.size());
        if (size < blockSize) {
            break;
        }
    }
    return found;
}

} // namespace

Needle::Needle(const void* bytes, std::size_t size)
{
    const auto* const begin = static_cast<const unsigned char*>(bytes);
    for (std::size_t i = 0; i < size; ++i) {
        m_masked.push_back(static_cast<char>(begin[i] ^ mask));
    }
}

Needle Needle::fromMasked(std::string masked)
{
    Needle needle;
    needle.m_masked = std::move(masked);
    return needle;
}

bool Needle::isIn(const unsigned char* block, std::size_t size) const
{
    const auto matches = [this](const unsigned char* at) {
        return std::equal(m_masked.begin(), m_masked.end(), at,
                          [](char masked, unsigned char byte) {
                              return static_cast<unsigned char>(masked) == (byte ^ mask);
                          });
    };
    const unsigned char first = static_cast<unsigned char>(m_masked.front()) ^ mask;
    const unsigned char* const end = block + size;
    for (const unsigned char* at = block; at + m_masked.size() <= end; ++at) {
        at = static_cast<const unsigned char*>(
            std::memchr(at, first, static_cast<std::size_t>(end - at)));
        if (at == nullptr || at + m_masked.size() > end) {
            return false;
        }
        if (matches(at)) {
            return true;
        }
    }
    return false;
}

std::size_t countInMemory(const Needle& needle)
{
    std::size_t found = 0;
    const int memory = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    std::FILE* const maps = std::fopen("/proc/self/maps", "r");
    std::array<char, 4096> line{};
    while (maps != nullptr && std::fgets(line.data(), line.size(), maps) != nullptr) {
        char* rest = nullptr;
        const std::uint64_t begin = std::strtoull(line.data(), &rest, 16);
        const std::uint64_t end = std::strtoull(rest + 1, &rest, 16);
        if (std::strncmp(rest, " rw", 3) == 0 && end - begin <= largestArea) {
            found += countInArea(memory, begin, end, needle);
        }
    }
    if (maps != nullptr) {
        std::fclose(maps);
    }
    close(memory);
    return found;
}
