#include "base/uastring.h"

#include "base/uabytestring.h"
#include "base/utf16.h"
#include "platform/allocator.h"
#include "platform/status.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

constinit UaString::Block UaString::s_nullBlock;

UaString::UaString(const char* text)
    : UaString(text, text == nullptr ? 0 : static_cast<OpcUa_Int64>(std::strlen(text)))
{
}

UaString::UaString(const char* text, OpcUa_Int64 length)
    : UaString()
{
    if (text == nullptr) {
        return;
    }
    if (char* content = allocate(length); content != nullptr) {
        std::memcpy(content, text, static_cast<std::size_t>(length));
    }
}

UaString::UaString(const OpcUa_String* string)
    : UaString(OpcUa_String_GetRawString(string), OpcUa_String_StrSize(string))
{
}

UaString::UaString(const UaByteString& bytes)
    // An empty byte string may have no block, but is a text all the same.
    : UaString(bytes.length() == 0 ? "" : reinterpret_cast<const char*>(bytes.data()),
               bytes.length())
{
}

void UaString::destroy(Block* block) noexcept
{
    OpcUa_String_Clear(&block->string);
    std::destroy_at(block);
    OpcUa_Memory_Free(block);
}

char* UaString::allocate(OpcUa_Int64 length) noexcept
{
    drop();
    m_pBlock = &s_nullBlock;
    if (length < 0 || length > MaxLength) {
        return nullptr;
    }
    const auto textSize = static_cast<std::size_t>(length) + 1;
    const bool isInline = length <= InlineLimit;
    void* memory = OpcUa_Memory_Alloc(sizeof(Block) + (isInline ? textSize : 0));
    if (memory == nullptr) {
        return nullptr;
    }
    auto* block = ::new (memory) Block();
    char* content = reinterpret_cast<char*>(block + 1);
    if (!isInline) {
        content = static_cast<char*>(OpcUa_Memory_Alloc(textSize));
        if (content == nullptr) {
            destroy(block);
            return nullptr;
        }
    }
    content[length] = '\0';
    block->string = {isInline ? 0 : OpcUa_String_OwnsContent, static_cast<OpcUa_UInt32>(length),
                     content};
    m_pBlock = block;
    return content;
}

OpcUa_Int32 UaString::size() const noexcept
{
    return static_cast<OpcUa_Int32>(UaUtf16::countUnits(view()));
}

OpcUa_Int32 UaString::byteOffset(OpcUa_Int32 index) const noexcept
{
    const std::string_view text = view();
    std::size_t offset = 0;
    for (; index > 0 && offset < text.size(); --index) {
        offset += UaChar::announcedLength(text[offset]);
    }
    return static_cast<OpcUa_Int32>(std::min(offset, text.size()));
}

UaChar UaString::at(OpcUa_Int32 index) const noexcept
{
    if (index < 0) {
        return {};
    }
    const std::string_view rest = view().substr(static_cast<std::size_t>(byteOffset(index)));
    return UaChar::decode(rest.data(), rest.size());
}

OpcUa_Int32 UaString::find(const UaString& text, OpcUa_Int32 from) const noexcept
{
    if (text.isNull()) {
        return -1;
    }
    const std::string_view sought = text.view();
    std::string_view rest = view();
    for (OpcUa_Int32 position = 0;; ++position) {
        if (position >= from && rest.starts_with(sought)) {
            return position;
        }
        if (rest.empty()) {
            return -1;
        }
        rest.remove_prefix(UaChar::sequenceLength(rest.data(), rest.size()));
    }
}

UaString UaString::substring(OpcUa_Int32 first, OpcUa_Int32 count) const
{
    if (isNull() || first < 0) {
        return {};
    }
    std::string_view rest = view();
    for (; first > 0; --first) {
        if (rest.empty()) {
            return {};
        }
        rest.remove_prefix(UaChar::sequenceLength(rest.data(), rest.size()));
    }
    std::size_t taken = count < 0 ? rest.size() : 0;
    for (; count > 0 && taken < rest.size(); --count) {
        taken += UaChar::sequenceLength(rest.data() + taken, rest.size() - taken);
    }
    if (taken == view().size()) {
        return *this;
    }
    return {rest.data(), static_cast<OpcUa_Int64>(taken)};
}

OpcUa_StatusCode UaString::copyTo(OpcUa_String* destination) const
{
    return OpcUa_String_CopyTo(toOpcUaString(), destination);
}

OpcUa_StatusCode UaString::detach(OpcUa_String* destination)
{
    OpcUa_String& string = m_pBlock->string;
    const bool isMovable =
        (string.flags & OpcUa_String_OwnsContent) != 0 && m_pBlock->count.isOne();
    const OpcUa_StatusCode status =
        isMovable ? OpcUa_String_AttachToString(string.strContent, string.uLength, 0, false, true,
                                                destination)
                  : copyTo(destination);
    if (OpcUa_IsGood(status)) {
        if (isMovable) {
            OpcUa_String_Initialize(&string);
        }
        *this = UaString();
    }
    return status;
}

UaString UaString::join(std::string_view left, std::string_view right) noexcept
{
    return compose(static_cast<OpcUa_Int64>(left.size()) + static_cast<OpcUa_Int64>(right.size()),
                   [left, right](char* text) {
                       std::memcpy(text, left.data(), left.size());
                       std::memcpy(text + left.size(), right.data(), right.size());
                   });
}

UaString& UaString::operator+=(const UaString& other) noexcept
{
    if (isNull()) {
        *this = other;
    } else if (!other.isEmpty()) {
        *this = join(view(), other.view());
    }
    return *this;
}

UaString& UaString::operator+=(const char* text) noexcept
{
    if (isNull()) {
        *this = UaString(text);
    } else if (text != nullptr && *text != '\0') {
        *this = join(view(), text);
    }
    return *this;
}

UaString operator+(const UaString& left, const UaString& right) noexcept
{
    UaString sum = left;
    sum += right;
    return sum;
}

UaString operator+(const UaString& left, const char* right) noexcept
{
    UaString sum = left;
    sum += right;
    return sum;
}

UaString operator+(const char* left, const UaString& right) noexcept
{
    if (left == nullptr) {
        return right;
    }
    return UaString::join(left, right.view());
}

bool operator<(const UaString& left, const UaString& right) noexcept
{
    if (left.m_pBlock == right.m_pBlock) {
        return false;
    }
    if (left.length() != right.length()) {
        return left.length() < right.length();
    }
    return OpcUa_String_Compare(left.toOpcUaString(), right.toOpcUaString()) < 0;
}
