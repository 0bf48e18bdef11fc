#include "tests/pki/libraryfaults.h"

#include <openssl/crypto.h>

#include <cstdlib>

namespace {

struct Faults
{
    bool isOn = false;
    std::size_t count = 0;
    std::size_t failAt = 0;
};

thread_local Faults t_faults;

bool mayAllocate()
{
    return !t_faults.isOn || t_faults.count++ != t_faults.failAt;
}

void* allocate(std::size_t size, const char* /*file*/, int /*line*/)
{
    return mayAllocate() ? std::malloc(size) : nullptr; // NOLINT(*-no-malloc): an allocator's own
}

void* reallocate(void* block, std::size_t size, const char* /*file*/, int /*line*/)
{
    return mayAllocate() ? std::realloc(block, size) : nullptr; // NOLINT(*-no-malloc)
}

void release(void* block, const char* /*file*/, int /*line*/)
{
    std::free(block); // NOLINT(*-no-malloc)
}

/// OpenSSL takes an allocator before its first allocation alone.
const bool s_isTaken = CRYPTO_set_mem_functions(allocate, reallocate, release) == 1;

} // namespace

LibraryFaults::LibraryFaults(std::size_t failAt)
{
    if (!s_isTaken) {
        std::abort();
    }
    t_faults = {.isOn = true, .count = 0, .failAt = failAt};
}

LibraryFaults::~LibraryFaults()
{
    t_faults.isOn = false;
}

bool LibraryFaults::hasFailed()
{
    return t_faults.count > t_faults.failAt;
}
