#pragma once

#include <cstddef>

/// Makes one of this thread's allocations in OpenSSL fail while it lives: the one with the number
/// `failAt`, counted from 0. The program that links it gives OpenSSL an allocator of its own before
/// `main` begins. Only one object may live at a time.
class LibraryFaults
{
public:
    explicit LibraryFaults(std::size_t failAt);
    ~LibraryFaults();
    LibraryFaults(const LibraryFaults&) = delete;
    LibraryFaults& operator=(const LibraryFaults&) = delete;

    /// Whether that allocation has come and failed.
    [[nodiscard]] static bool hasFailed();
};
