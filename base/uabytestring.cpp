#include "base/uabytestring.h"

#include "base/base64.h"
#include "base/hexadecimal.h"
#include "platform/allocator.h"
#include "platform/status.h"

#include <algorithm>
#include <utility>

namespace {

/// A copy, null when that isn't possible.
OpcUa_ByteString copyOf(const OpcUa_ByteString& source)
{
    OpcUa_ByteString copy = {-1, nullptr};
    // A failure has left the copy null, which is all there is to tell.
    static_cast<void>(OpcUa_ByteString_CopyTo(&source, &copy));
    return copy;
}

/// A record over bytes that aren't its own, for reading alone.
OpcUa_ByteString borrow(OpcUa_Int32 length, const OpcUa_Byte* data)
{
    return {length, const_cast<OpcUa_Byte*>(data)};
}

} // namespace

UaByteString::UaByteString(OpcUa_Int32 length, const OpcUa_Byte* data)
    : UaByteString(borrow(length, data))
{
}

UaByteString::UaByteString(const OpcUa_ByteString& source)
    : m_byteString(copyOf(source))
{
}

UaByteString::UaByteString(const UaByteString& other)
    : UaByteString(other.m_byteString)
{
}

UaByteString::UaByteString(UaByteString&& other) noexcept
    : m_byteString(std::exchange(other.m_byteString, {-1, nullptr}))
{
}

UaByteString& UaByteString::operator=(const UaByteString& other)
{
    if (this != &other) {
        // The old bytes go first, so that both needn't fit in memory.
        clear();
        m_byteString = copyOf(other.m_byteString);
    }
    return *this;
}

UaByteString& UaByteString::operator=(UaByteString&& other) noexcept
{
    UaByteString(std::move(other)).swap(*this);
    return *this;
}

UaByteString::~UaByteString()
{
    OpcUa_ByteString_Clear(&m_byteString);
}

void UaByteString::swap(UaByteString& other) noexcept
{
    std::swap(m_byteString, other.m_byteString);
}

void UaByteString::clear() noexcept
{
    OpcUa_ByteString_Clear(&m_byteString);
}

void UaByteString::setByteString(OpcUa_Int32 length, const OpcUa_Byte* data)
{
    // The copy is made first: the bytes may be this object's own.
    UaByteString(length, data).swap(*this);
}

void UaByteString::setByteString(UaByteString& source, bool detach)
{
    if (detach) {
        *this = std::move(source);
    } else {
        *this = source;
    }
}

void UaByteString::attach(OpcUa_ByteString* source) noexcept
{
    clear();
    if (source != nullptr) {
        m_byteString = std::exchange(*source, {-1, nullptr});
    }
}

void UaByteString::attach(OpcUa_Int32 length, OpcUa_Byte* data) noexcept
{
    clear();
    if (length < 0) {
        OpcUa_Memory_Free(data);
    } else {
        m_byteString = {length, data};
    }
}

void UaByteString::detach(OpcUa_ByteString* destination) noexcept
{
    if (destination != nullptr) {
        OpcUa_ByteString_Clear(destination);
        *destination = std::exchange(m_byteString, {-1, nullptr});
    }
}

OpcUa_StatusCode UaByteString::copyTo(OpcUa_ByteString* destination) const
{
    return OpcUa_ByteString_CopyTo(&m_byteString, destination);
}

UaString UaByteString::toHex(bool spaces) const
{
    return UaHexadecimal::encode(data(), static_cast<std::size_t>(std::max(length(), 0)), spaces);
}

UaString UaByteString::toBase64() const
{
    return isNull() ? UaString() : UaBase64::encode(data(), static_cast<std::size_t>(length()));
}

OpcUa_StatusCode UaByteString::fromBase64(const UaString& text, UaByteString& bytes)
{
    if (text.isNull()) {
        bytes.clear();
        return OpcUa_Good;
    }
    OpcUa_ByteString decoded;
    const OpcUa_StatusCode status = UaBase64::decode(text.view(), &decoded);
    if (OpcUa_IsGood(status)) {
        bytes.attach(&decoded);
    }
    return status;
}

UaByteString& UaByteString::operator+=(const UaByteString& other)
{
    if (isEmpty()) {
        // An empty one and a null one give an empty one.
        if (!other.isNull() && this != &other) {
            *this = other;
        }
        return *this;
    }
    if (other.isEmpty()) {
        return *this;
    }
    // A record of its own lets the stack append bytes to themselves.
    const OpcUa_ByteString source = other.m_byteString;
    if (OpcUa_IsNotGood(OpcUa_ByteString_Concatenate(&source, &m_byteString, 0))) {
        clear();
    }
    return *this;
}

bool operator==(const UaByteString& left, const UaByteString& right) noexcept
{
    return OpcUa_ByteString_Compare(&left.m_byteString, &right.m_byteString) == 0;
}
