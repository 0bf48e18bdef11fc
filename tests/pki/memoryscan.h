#pragma once

#include <string>
#include <vector>

/// Something to look for in the memory of this process, kept in a form in which it isn't found itself.
class Needle
{
public:
    Needle() = default;
    /// Takes bytes that the caller still has to wipe.
    Needle(const void* bytes, std::size_t size);
    /// From what masked() gave, in another process perhaps.
    [[nodiscard]] static Needle fromMasked(std::string masked);

    [[nodiscard]] const std::string& masked() const { return m_masked; }
    [[nodiscard]] bool isIn(const unsigned char* block, std::size_t size) const;

private:
    std::string m_masked;
};

/// How many places of the process' writable memory hold a needle; the same place may count twice.
[[nodiscard]] std::size_t countInMemory(const Needle& needle);
