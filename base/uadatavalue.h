#pragma once

#include "base/uasharedrecord.h"
#include "platform/types.h"
#include "stack/opcua_datavalue.h"

class UaDateTime;
class UaVariant;

/// A value with its status and times (OPC 10000-6, 5.2.2.17). The default is a Null value, Good, with
/// null times.
///
/// A handle to one shared block: copying counts and never copies the value. A setter changes its own
/// handle alone, and copies the block first while others share it. Copies may live in different
/// threads; one handle belongs to one thread. Where memory is short, a constructor leaves the default;
/// a setter answers `BadOutOfMemory` and leaves what was there.
class UaDataValue
{
public:
    UaDataValue() noexcept = default;

    /// Picoseconds are in units of 10 picoseconds.
    UaDataValue(const UaVariant& value, OpcUa_StatusCode statusCode,
                const UaDateTime& sourceTimestamp, const UaDateTime& serverTimestamp,
                OpcUa_UInt16 sourcePicoseconds = 0, OpcUa_UInt16 serverPicoseconds = 0) noexcept;

    /// Deep copy of a record.
    explicit UaDataValue(const OpcUa_DataValue& dataValue) noexcept;
    UaDataValue& operator=(const OpcUa_DataValue& dataValue) noexcept;

    /// Makes the default; other handles to the block keep theirs.
    void clear() noexcept;

    /// A deep copy. toOpcUaDataValue() gives access without one.
    [[nodiscard]] UaVariant value() const;
    [[nodiscard]] OpcUa_StatusCode statusCode() const noexcept;
    [[nodiscard]] UaDateTime sourceTimestamp() const noexcept;
    [[nodiscard]] UaDateTime serverTimestamp() const noexcept;

    /// In units of 10 picoseconds.
    [[nodiscard]] OpcUa_UInt16 sourcePicoseconds() const noexcept;
    [[nodiscard]] OpcUa_UInt16 serverPicoseconds() const noexcept;

    /// Deep copy of the value; with `bDetach` it moves, and the source is left Null on success. Other
    /// failures than a lack of memory are those of OpcUa_Variant_CopyTo.
    OpcUa_StatusCode setValue(const UaVariant& value) noexcept;
    OpcUa_StatusCode setValue(UaVariant& value, bool bDetach) noexcept;
    OpcUa_StatusCode setStatusCode(OpcUa_StatusCode statusCode) noexcept;
    OpcUa_StatusCode setSourceTimestamp(const UaDateTime& timestamp) noexcept;
    OpcUa_StatusCode setServerTimestamp(const UaDateTime& timestamp) noexcept;
    OpcUa_StatusCode setSourcePicoseconds(OpcUa_UInt16 picoseconds) noexcept;
    OpcUa_StatusCode setServerPicoseconds(OpcUa_UInt16 picoseconds) noexcept;

    /// The record within the block, never null; valid until the handle changes or dies.
    [[nodiscard]] const OpcUa_DataValue* toOpcUaDataValue() const noexcept;

    /// Deep copy into an initialised record, which is cleared first. `BadInvalidArgument` for a null
    /// pointer, `BadOutOfMemory`; the record is cleared then.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_DataValue* pTarget) const noexcept;

    /// Moves the content into an initialised record, which is cleared first, and leaves the default;
    /// content that other handles share is copied instead. `BadInvalidArgument` for a null pointer,
    /// `BadOutOfMemory`; the handle stays as it was then.
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_DataValue* pTarget) noexcept;

    /// Compares the status code, with the flag both timestamps and their picoseconds, then the value
    /// by UaVariant's operator==: a NaN differs from itself, also within one block.
    [[nodiscard]] bool isEqual(const UaDataValue& other, bool bCompareTimestamps) const;

    /// The same for records.
    [[nodiscard]] static bool isEqual(const OpcUa_DataValue& left, const OpcUa_DataValue& right,
                                      bool bCompareTimestamps);

    /// isEqual with the timestamps.
    [[nodiscard]] bool operator==(const UaDataValue& other) const;

private:
    using Block =
        UaSharedRecord<OpcUa_DataValue, OpcUa_DataValue_Initialize, OpcUa_DataValue_Clear>;

    static Block copyOf(const OpcUa_DataValue& dataValue) noexcept;
    OpcUa_DataValue* withoutValue() noexcept;
    template <typename T>
    OpcUa_StatusCode setField(T OpcUa_DataValue::*field, T value) noexcept;

    Block m_block; ///< Empty for the default.
};
