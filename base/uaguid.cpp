#include "base/uaguid.h"

#include "base/hexadecimal.h"
#include "base/uastring.h"
#include "platform/allocator.h"
#include "platform/datetime.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_datavalue.h"

#include <array>
#include <string_view>

namespace {

/// Reads `digits` hexadecimal digits; -1 at the first character that is none, behind which nothing is
/// looked at.
OpcUa_Int64 readDigits(const char* text, int digits)
{
    OpcUa_Int64 number = 0;
    for (int i = 0; i < digits; ++i) {
        const int digit = UaHexadecimal::valueOf(text[i]);
        if (digit < 0) {
            return -1;
        }
        number = number * 16 + digit;
    }
    return number;
}

/// Reads the form that toString prints, with all its digits. False for any other text, among which
/// are some that the scan of the stack accepts: it allows fields to be short.
bool readWholeForm(const char* text, OpcUa_Guid& guid)
{
    static constexpr std::array<int, 5> digits = {8, 4, 4, 4, 12};
    std::array<OpcUa_Int64, digits.size()> groups{};
    text += *text == '{' ? 1 : 0;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && *text++ != '-') {
            return false;
        }
        groups[i] = readDigits(text, digits[i]);
        if (groups[i] < 0) {
            return false;
        }
        text += digits[i];
    }
    guid.Data1 = static_cast<OpcUa_UInt32>(groups[0]);
    guid.Data2 = static_cast<OpcUa_UInt16>(groups[1]);
    guid.Data3 = static_cast<OpcUa_UInt16>(groups[2]);
    auto rest = (static_cast<OpcUa_UInt64>(groups[3]) << 48) | static_cast<OpcUa_UInt64>(groups[4]);
    for (std::size_t i = sizeof guid.Data4; i > 0; --i, rest >>= 8) {
        guid.Data4[i - 1] = static_cast<OpcUa_Byte>(rest);
    }
    return true;
}

} // namespace

UaGuid UaGuid::create() noexcept
{
    UaGuid guid;
    static_cast<void>(create(guid));
    return guid;
}

OpcUa_StatusCode UaGuid::create(UaGuid& target) noexcept
{
    target.clear();
    return OpcUa_Guid_Create(&target.m_guid);
}

UaString UaGuid::toString() const
{
    std::array<char, OpcUa_Guid_TextSize> text;
    static_cast<void>(OpcUa_Guid_ToString(&m_guid, text.data(), OpcUa_Guid_TextSize));
    return {text.data(), OpcUa_Guid_TextSize - 1};
}

OpcUa_StatusCode UaGuid::fromString(const UaString& text)
{
    return fromString(text.toUtf8());
}

OpcUa_StatusCode UaGuid::fromString(const char* text) noexcept
{
    // The usual form is read without the scan, which takes many times as long.
    if (text != nullptr && readWholeForm(text, m_guid)) {
        return OpcUa_Good;
    }
    return OpcUa_Guid_FromString(text, &m_guid);
}

void UaGuid::copyTo(OpcUa_Guid* pTarget) const noexcept
{
    if (pTarget != nullptr) {
        *pTarget = m_guid;
    }
}

OpcUa_Guid* UaGuid::copy() const noexcept
{
    auto* block = static_cast<OpcUa_Guid*>(OpcUa_Memory_Alloc(sizeof(OpcUa_Guid)));
    copyTo(block);
    return block;
}

OpcUa_StatusCode UaGuid::toVariant(OpcUa_Variant* pVariant) const noexcept
{
    if (pVariant == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_Variant_Clear(pVariant);
    OpcUa_Guid* block = copy();
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    pVariant->Datatype = OpcUaType_Guid;
    pVariant->ArrayType = OpcUa_VariantArrayType_Scalar;
    pVariant->Value.Guid = block;
    return OpcUa_Good;
}

OpcUa_StatusCode UaGuid::toDataValue(OpcUa_DataValue* pDataValue,
                                     bool bUpdateTimestamps) const noexcept
{
    if (pDataValue == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const OpcUa_StatusCode status = toVariant(&pDataValue->Value);
    if (bUpdateTimestamps && OpcUa_IsGood(status)) {
        pDataValue->SourceTimestamp = OpcUa_DateTime_UtcNow();
        pDataValue->ServerTimestamp = OpcUa_DateTime_UtcNow();
    }
    return status;
}
