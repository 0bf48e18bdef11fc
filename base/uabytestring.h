#pragma once

#include "base/uastring.h"
#include "stack/opcua_bytestring.h"

/// The owner of one OpcUa_ByteString (OPC 10000-6, 5.1.2), held by value. A copy is a deep copy and
/// nothing is shared, so that one object belongs to one thread at a time.
///
/// A length of -1 is the null byte string, 0 an empty one. When memory is short for a copy or a sum,
/// the object becomes null.
class UaByteString
{
public:
    /// The null byte string.
    UaByteString() noexcept = default;
    /// Copies `length` bytes; a negative length, or a null pointer with a positive one, gives null.
    UaByteString(OpcUa_Int32 length, const OpcUa_Byte* data);
    /// Copies a stack byte string; null gives null.
    explicit UaByteString(const OpcUa_ByteString& source);

    UaByteString(const UaByteString& other);
    UaByteString(UaByteString&& other) noexcept;
    UaByteString& operator=(const UaByteString& other);
    UaByteString& operator=(UaByteString&& other) noexcept;
    ~UaByteString();

    void swap(UaByteString& other) noexcept;

    /// Bytes, -1 for null.
    [[nodiscard]] OpcUa_Int32 length() const noexcept { return m_byteString.Length; }
    [[nodiscard]] bool isNull() const noexcept { return m_byteString.Length < 0; }
    /// True for a null one too.
    [[nodiscard]] bool isEmpty() const noexcept { return m_byteString.Length < 1; }
    /// The bytes, owned by this object and valid until it changes; may be null when there are none.
    [[nodiscard]] const OpcUa_Byte* data() const noexcept { return m_byteString.Data; }
    /// The record itself, for calls into the stack; it must not be cleared.
    [[nodiscard]] const OpcUa_ByteString* toOpcUaByteString() const noexcept
    {
        return &m_byteString;
    }

    /// Makes this null.
    void clear() noexcept;
    /// Replaces the content by a copy of `length` bytes, which may be bytes of this object. A null
    /// pointer with a positive length, or a negative length, gives null.
    void setByteString(OpcUa_Int32 length, const OpcUa_Byte* data);
    /// Replaces the content by a copy, or with `detach` by the bytes of the source, which is left null.
    void setByteString(UaByteString& source, bool detach);

    /// Takes the bytes of a record over and leaves the record null; a null pointer gives null.
    void attach(OpcUa_ByteString* source) noexcept;
    /// Takes a block of the stack's allocator over. With a negative length it is freed, and this is
    /// null.
    void attach(OpcUa_Int32 length, OpcUa_Byte* data) noexcept;
    /// Hands the bytes over without a copy and leaves this null. What the destination held is cleared;
    /// with a null pointer nothing happens.
    void detach(OpcUa_ByteString* destination) noexcept;
    /// Deep copy for the caller to clear; null gives null. What the destination held is cleared.
    /// `BadInvalidArgument` for a null pointer, `BadOutOfMemory`; the destination is null then.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ByteString* destination) const;

    /// Two upper case digits per byte, with `spaces` and a blank between bytes. Without bytes an empty
    /// text; the null string when the text would be too long.
    [[nodiscard]] UaString toHex(bool spaces = false) const;
    /// Base 64 with padding and without line breaks; null gives null, empty an empty text, and a text
    /// that would be too long the null string.
    [[nodiscard]] UaString toBase64() const;
    /// Reads base 64 by the rules of UaBase64::decode; null gives null. `BadInvalidArgument` for a text
    /// that is none, `BadOutOfMemory`; `bytes` stays as it was then.
    [[nodiscard]] static OpcUa_StatusCode fromBase64(const UaString& text, UaByteString& bytes);

    /// Appends; the result is null only if both are. Appending to itself is allowed. When the sum is
    /// too long or memory is short, this becomes null.
    UaByteString& operator+=(const UaByteString& other);

    /// Equal lengths and bytes; a null one equals null ones alone.
    friend bool operator==(const UaByteString& left, const UaByteString& right) noexcept;

private:
    OpcUa_ByteString m_byteString = {-1, nullptr};
};
