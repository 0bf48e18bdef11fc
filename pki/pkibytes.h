#pragma once

#include "platform/types.h"

#include <cstddef>

/// Bytes on the way from or to a file, from the stack's allocator and wiped before they are freed:
/// they may hold a key. Not for users of the layer.
class PkiBytes
{
public:
    PkiBytes() noexcept = default;
    PkiBytes(const PkiBytes&) = delete;
    PkiBytes(PkiBytes&& other) noexcept;
    PkiBytes& operator=(const PkiBytes&) = delete;
    PkiBytes& operator=(PkiBytes&& other) noexcept;
    ~PkiBytes();

    [[nodiscard]] const OpcUa_Byte* data() const noexcept { return m_data; }
    [[nodiscard]] OpcUa_Byte* data() noexcept { return m_data; }
    [[nodiscard]] std::size_t size() const noexcept { return m_size; }
    [[nodiscard]] std::size_t capacity() const noexcept { return m_capacity; }

    /// Makes room for so many bytes; those there are stay. False when memory is short.
    [[nodiscard]] bool reserve(std::size_t capacity) noexcept;
    /// Settles how many bytes of the room count; no more than capacity().
    void setSize(std::size_t size) noexcept;

private:
    OpcUa_Byte* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};
