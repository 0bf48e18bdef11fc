#include "base/uadatavalue.h"

#include "base/uadatetime.h"
#include "base/uavariant.h"
#include "platform/status.h"

#include <utility>

namespace {

constexpr OpcUa_DataValue emptyDataValue{};

/// A UaVariant has the layout of the record and nothing else, so it can be laid over one.
const UaVariant& asVariant(const OpcUa_Variant& variant)
{
    return reinterpret_cast<const UaVariant&>(variant);
}

bool isEqualTime(OpcUa_DateTime left, OpcUa_DateTime right)
{
    return OpcUa_DateTime_ToTicks(left) == OpcUa_DateTime_ToTicks(right);
}

bool hasEqualTimes(const OpcUa_DataValue& left, const OpcUa_DataValue& right)
{
    return isEqualTime(left.SourceTimestamp, right.SourceTimestamp) &&
           isEqualTime(left.ServerTimestamp, right.ServerTimestamp) &&
           left.SourcePicoseconds == right.SourcePicoseconds &&
           left.ServerPicoseconds == right.ServerPicoseconds;
}

} // namespace

UaDataValue::UaDataValue(const UaVariant& value, OpcUa_StatusCode statusCode,
                         const UaDateTime& sourceTimestamp, const UaDateTime& serverTimestamp,
                         OpcUa_UInt16 sourcePicoseconds, OpcUa_UInt16 serverPicoseconds) noexcept
    : m_block(copyOf({*value.toOpcUaVariant(), statusCode, sourceTimestamp.toOpcUaDateTime(),
                      serverTimestamp.toOpcUaDateTime(), sourcePicoseconds, serverPicoseconds}))
{
}

UaDataValue::UaDataValue(const OpcUa_DataValue& dataValue) noexcept
    : m_block(copyOf(dataValue))
{
}

UaDataValue& UaDataValue::operator=(const OpcUa_DataValue& dataValue) noexcept
{
    m_block = copyOf(dataValue);
    return *this;
}

UaDataValue::Block UaDataValue::copyOf(const OpcUa_DataValue& dataValue) noexcept
{
    Block block = Block::create();
    if (OpcUa_DataValue* record = block.unshared();
        record == nullptr || OpcUa_IsBad(OpcUa_DataValue_CopyTo(&dataValue, record))) {
        return {};
    }
    return block;
}

void UaDataValue::clear() noexcept
{
    m_block = {};
}

UaVariant UaDataValue::value() const
{
    return UaVariant(toOpcUaDataValue()->Value);
}

OpcUa_StatusCode UaDataValue::statusCode() const noexcept
{
    return toOpcUaDataValue()->StatusCode;
}

UaDateTime UaDataValue::sourceTimestamp() const noexcept
{
    return UaDateTime(toOpcUaDataValue()->SourceTimestamp);
}

UaDateTime UaDataValue::serverTimestamp() const noexcept
{
    return UaDateTime(toOpcUaDataValue()->ServerTimestamp);
}

OpcUa_UInt16 UaDataValue::sourcePicoseconds() const noexcept
{
    return toOpcUaDataValue()->SourcePicoseconds;
}

OpcUa_UInt16 UaDataValue::serverPicoseconds() const noexcept
{
    return toOpcUaDataValue()->ServerPicoseconds;
}

/// The record for writing with a Null value and the other fields as they are, so that an old value is
/// never copied to be replaced; null when memory is short.
OpcUa_DataValue* UaDataValue::withoutValue() noexcept
{
    if (OpcUa_DataValue* record = m_block.unshared(); record != nullptr) {
        OpcUa_Variant_Clear(&record->Value);
        return record;
    }
    Block block = Block::create();
    OpcUa_DataValue* record = block.unshared();
    if (record != nullptr) {
        *record = *toOpcUaDataValue();
        OpcUa_Variant_Initialize(&record->Value);
        m_block = std::move(block);
    }
    return record;
}

OpcUa_StatusCode UaDataValue::setValue(const UaVariant& value) noexcept
{
    OpcUa_Variant copy{};
    const OpcUa_StatusCode status = value.copyTo(&copy);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    OpcUa_DataValue* record = withoutValue();
    if (record == nullptr) {
        OpcUa_Variant_Clear(&copy);
        return OpcUa_BadOutOfMemory;
    }
    record->Value = copy;
    return OpcUa_Good;
}

OpcUa_StatusCode UaDataValue::setValue(UaVariant& value, bool bDetach) noexcept
{
    if (!bDetach) {
        return setValue(value);
    }
    OpcUa_DataValue* record = withoutValue();
    if (record == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    value.detach(&record->Value);
    return OpcUa_Good;
}

template <typename T>
OpcUa_StatusCode UaDataValue::setField(T OpcUa_DataValue::*field, T value) noexcept
{
    OpcUa_DataValue* record = m_block.unshared();
    if (record == nullptr) {
        Block copy = copyOf(*toOpcUaDataValue());
        record = copy.unshared();
        if (record == nullptr) {
            return OpcUa_BadOutOfMemory;
        }
        m_block = std::move(copy);
    }
    record->*field = value;
    return OpcUa_Good;
}

OpcUa_StatusCode UaDataValue::setStatusCode(OpcUa_StatusCode statusCode) noexcept
{
    return setField(&OpcUa_DataValue::StatusCode, statusCode);
}

OpcUa_StatusCode UaDataValue::setSourceTimestamp(const UaDateTime& timestamp) noexcept
{
    return setField(&OpcUa_DataValue::SourceTimestamp, timestamp.toOpcUaDateTime());
}

OpcUa_StatusCode UaDataValue::setServerTimestamp(const UaDateTime& timestamp) noexcept
{
    return setField(&OpcUa_DataValue::ServerTimestamp, timestamp.toOpcUaDateTime());
}

OpcUa_StatusCode UaDataValue::setSourcePicoseconds(OpcUa_UInt16 picoseconds) noexcept
{
    return setField(&OpcUa_DataValue::SourcePicoseconds, picoseconds);
}

OpcUa_StatusCode UaDataValue::setServerPicoseconds(OpcUa_UInt16 picoseconds) noexcept
{
    return setField(&OpcUa_DataValue::ServerPicoseconds, picoseconds);
}

const OpcUa_DataValue* UaDataValue::toOpcUaDataValue() const noexcept
{
    return m_block.isEmpty() ? &emptyDataValue : m_block.get();
}

OpcUa_StatusCode UaDataValue::copyTo(OpcUa_DataValue* pTarget) const noexcept
{
    return OpcUa_DataValue_CopyTo(toOpcUaDataValue(), pTarget);
}

OpcUa_StatusCode UaDataValue::detach(OpcUa_DataValue* pTarget) noexcept
{
    if (pTarget == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if (OpcUa_DataValue* record = m_block.unshared(); record != nullptr) {
        OpcUa_DataValue_Clear(pTarget);
        *pTarget = std::exchange(*record, OpcUa_DataValue{});
    } else if (const OpcUa_StatusCode status = copyTo(pTarget); OpcUa_IsBad(status)) {
        return status;
    }
    clear();
    return OpcUa_Good;
}

bool UaDataValue::isEqual(const OpcUa_DataValue& left, const OpcUa_DataValue& right,
                          bool bCompareTimestamps)
{
    return left.StatusCode == right.StatusCode &&
           (!bCompareTimestamps || hasEqualTimes(left, right)) &&
           asVariant(left.Value) == asVariant(right.Value);
}

bool UaDataValue::isEqual(const UaDataValue& other, bool bCompareTimestamps) const
{
    return isEqual(*toOpcUaDataValue(), *other.toOpcUaDataValue(), bCompareTimestamps);
}

bool UaDataValue::operator==(const UaDataValue& other) const
{
    return isEqual(other, true);
}
