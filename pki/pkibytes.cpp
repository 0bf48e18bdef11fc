#include "pki/pkibytes.h"

#include "platform/allocator.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <cstring>
#include <utility>

PkiBytes::PkiBytes(PkiBytes&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr))
    , m_size(std::exchange(other.m_size, 0))
    , m_capacity(std::exchange(other.m_capacity, 0))
{
}

PkiBytes& PkiBytes::operator=(PkiBytes&& other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
    return *this;
}

PkiBytes::~PkiBytes()
{
    if (m_data != nullptr) {
        OPENSSL_cleanse(m_data, m_capacity);
        OpcUa_Memory_Free(m_data);
    }
}

bool PkiBytes::reserve(std::size_t capacity) noexcept
{
    if (capacity <= m_capacity) {
        return true;
    }
    // No realloc: it would leave the old bytes behind.
    auto* const data = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(capacity));
    if (data == nullptr) {
        return false;
    }
    PkiBytes larger;
    larger.m_data = data;
    larger.m_size = m_size;
    larger.m_capacity = capacity;
    if (m_size > 0) {
        std::memcpy(data, m_data, m_size);
    }
    *this = std::move(larger);
    return true;
}

void PkiBytes::setSize(std::size_t size) noexcept
{
    m_size = std::min(size, m_capacity);
}
