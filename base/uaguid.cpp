#include "base/uaguid.h"

#include "base/guidtext.h"
#include "base/uastring.h"
#include "platform/allocator.h"
#include "platform/datetime.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_datavalue.h"

#include <array>

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
    return UaGuidText::read(text.view(), m_guid);
}

OpcUa_StatusCode UaGuid::fromString(const char* text) noexcept
{
    return text == nullptr ? OpcUa_Guid_FromString(text, &m_guid) : UaGuidText::read(text, m_guid);
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
