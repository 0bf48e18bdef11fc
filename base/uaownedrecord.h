#pragma once

#include "platform/status.h"
#include "platform/types.h"

#include <utility>

/// One stack record, owned by value: a copy is a deep copy, a move takes the content and leaves an
/// initialised record. Where memory is short, a copy leaves an initialised record. The members of the
/// small value classes are of this kind, so that none of them has to say it again.
///
/// `Initialize`, `Clear` and `CopyTo` are the record's functions of those names.
template <typename Record, void (*Initialize)(Record*), void (*Clear)(Record*),
          OpcUa_StatusCode (*CopyTo)(const Record*, Record*)>
class UaOwnedRecord
{
public:
    UaOwnedRecord() noexcept { Initialize(&m_record); }

    explicit UaOwnedRecord(const Record& record) noexcept
        : UaOwnedRecord()
    {
        set(record);
    }

    UaOwnedRecord(const UaOwnedRecord& other) noexcept
        : UaOwnedRecord(other.m_record)
    {
    }

    UaOwnedRecord(UaOwnedRecord&& other) noexcept
        : m_record(other.m_record)
    {
        Initialize(&other.m_record);
    }

    ~UaOwnedRecord() { Clear(&m_record); }

    UaOwnedRecord& operator=(const UaOwnedRecord& other) noexcept
    {
        set(other.m_record); // a record copied to itself stays
        return *this;
    }

    UaOwnedRecord& operator=(UaOwnedRecord&& other) noexcept
    {
        UaOwnedRecord taken(std::move(other));
        std::swap(m_record, taken.m_record);
        return *this;
    }

    /// Deep copy of a record, which may lie inside this one. A failure leaves an initialised record.
    void set(const Record& record) noexcept { static_cast<void>(CopyTo(&record, &m_record)); }

    void clear() noexcept { Clear(&m_record); }

    [[nodiscard]] const Record* get() const noexcept { return &m_record; }
    [[nodiscard]] Record* get() noexcept { return &m_record; }

    [[nodiscard]] OpcUa_StatusCode copyTo(Record* target) const noexcept
    {
        return CopyTo(&m_record, target);
    }

    /// Moves the content into an initialised record, which is cleared first, and leaves an
    /// initialised one. `BadInvalidArgument` for a null pointer, and nothing is done.
    [[nodiscard]] OpcUa_StatusCode detach(Record* target) noexcept
    {
        if (target == nullptr) {
            return OpcUa_BadInvalidArgument;
        }
        Clear(target);
        std::swap(*target, m_record);
        return OpcUa_Good;
    }

private:
    Record m_record;
};
